#include "data/sqlite/Replacing.h"

#include "data/Engine.h"
#include "data/sqlite/File.h"
#include "data/sqlite/Handle.h"
#include "runtime/OwnerOnly.h"

#include <sqlite3.h>

#include <fstream>

namespace zv::sqlite {
namespace {

namespace fs = std::filesystem;

fs::path noteOf(fs::path live) { return live += ".cambiando"; }

/// Folds the log into the file, which only works while nobody else has it open.
void closeForAll(const fs::path& file)
{
    const std::shared_ptr<Handle> handle = openHandle(file, Opening::existing, Durability::full);
    if (sqlite3_exec(handle->database.get(), "PRAGMA journal_mode=DELETE", nullptr, nullptr, nullptr) !=
        SQLITE_OK)
        failFor(
            file,
            u"está abierta en otro puesto o en otra ventana: ciérrenla y repita la orden. No se ha cambiado "
            u"nada.");
}

bool isThere(const fs::path& file)
{
    std::error_code ignored;
    return fs::exists(file, ignored);
}

/// Idempotent: each file is either still where it was, or where it goes.
void moveAll(const fs::path& live, const fs::path& with, const fs::path& kept)
{
    for (const Database which : everyDatabase) {
        if (!isThere(fileOf(with, which)))
            continue;
        if (!isThere(fileOf(kept, which)))
            fs::rename(fileOf(live, which), fileOf(kept, which));
        fs::rename(fileOf(with, which), fileOf(live, which));
    }
}

} // namespace

void replaceFiles(const fs::path& live, const fs::path& with, const fs::path& kept)
{
    for (const Database which : everyDatabase) {
        closeForAll(fileOf(live, which));
        closeForAll(fileOf(with, which));
    }
    const fs::path note = noteOf(live);
    const auto name = [](const fs::path& path) {
        const std::u8string text = path.filename().u8string();
        return std::string(text.begin(), text.end());
    };
    fs::path draft = note;
    draft += ".nueva";
    std::error_code error = owneronly::write(draft, name(with) + "\n" + name(kept) + "\n");
    if (!error)
        error = owneronly::place(draft, note);
    if (error)
        throw fs::filesystem_error("no se puede escribir", note, error);
    moveAll(live, with, kept);
    fs::remove(note);
}

void finishReplacing(const fs::path& live)
{
    const fs::path note = noteOf(live);
    if (!isThere(note))
        return;
    std::ifstream stream(note, std::ios::binary);
    std::string with;
    std::string kept;
    if (!std::getline(stream, with) || !std::getline(stream, kept))
        return;
    const auto beside = [&](const std::string& name) {
        return live.parent_path() / std::u8string(name.begin(), name.end());
    };
    moveAll(live, beside(with), beside(kept));
    std::error_code ignored;
    fs::remove(note, ignored);
}

} // namespace zv::sqlite
