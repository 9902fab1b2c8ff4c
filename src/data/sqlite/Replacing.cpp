#include "data/sqlite/Replacing.h"

#include "data/DataError.h"
#include "data/Engine.h"
#include "data/sqlite/File.h"
#include "data/sqlite/Handle.h"
#include "data/sqlite/Rights.h"
#include "runtime/FolderLock.h"
#include "runtime/OwnerOnly.h"

#include <sqlite3.h>

#include <chrono>
#include <fstream>
#include <thread>

namespace zv::sqlite {
namespace {

namespace fs = std::filesystem;

constexpr std::chrono::seconds longestWait{15};
constexpr std::chrono::milliseconds waitStep{10};

fs::path with(fs::path file, const char* suffix) { return file += suffix; }

/// Note of the moves that are going on.
fs::path noteOf(const fs::path& live) { return with(resolved(live), ".cambiando"); }
/// The note before the first move, while the files may still turn out to be open elsewhere.
fs::path intentOf(const fs::path& live) { return with(noteOf(live), ".nueva"); }

bool isThere(const fs::path& file)
{
    std::error_code ignored;
    return fs::exists(file, ignored);
}

/// Folds the log into the file, which only works while nobody else has it open. False, and the file as it
/// was, if it is no database any more.
bool closedForAll(const fs::path& file)
{
    constexpr StringView open =
        u"está abierta en otro puesto o en otra ventana: ciérrenla y repita la orden. No se ha cambiado "
        u"nada.";
    try {
        const std::shared_ptr<Handle> handle = openHandle(file, OpenAs::existing, Durability::full);
        const int code =
            sqlite3_exec(handle->database.get(), "PRAGMA journal_mode=DELETE", nullptr, nullptr, nullptr);
        if ((code & 0xFF) == SQLITE_BUSY || (code & 0xFF) == SQLITE_LOCKED)
            failFor(file, open);
        return code == SQLITE_OK;
    } catch (const DamagedFile&) {
        return false;
    } catch (const DataError& error) {
        if (error.number() == failure::locked)
            failFor(file, open);
        return false;
    }
}

/// Idempotent: each file is either still where it was, or where it goes. Side files first: beside another
/// database they would spoil it.
void moveAll(const fs::path& live, const fs::path& made, const fs::path& kept)
{
    for (const Database which : everyDatabase) {
        if (!isThere(fileOf(made, which)))
            continue;
        for (const char* suffix : {"-journal", "-wal", "-shm", ""}) {
            const fs::path from = with(fileOf(live, which), suffix);
            const fs::path to = with(fileOf(kept, which), suffix);
            if (!isThere(from))
                continue;
            if (isThere(to))
                failFor(to, u"está donde se guarda lo que había: llévelo a otro sitio y abra el centro.");
            fs::rename(from, to);
        }
        fs::rename(fileOf(made, which), fileOf(live, which));
    }
    // The directory's entries, which a crash would otherwise lose.
    owneronly::flush(live.has_parent_path() ? live.parent_path() : fs::path("."));
}

/// Readies the new files: complete without a log, as their users know the old ones, and on disk.
void ready(const fs::path& live, const fs::path& made)
{
    for (const Database which : everyDatabase) {
        const fs::path old = fileOf(live, which);
        const fs::path file = fileOf(made, which);
        if (isThere(old))
            closedForAll(old);
        if (!closedForAll(file))
            failFor(file, u"no se ha podido cerrar. No se ha cambiado nada.");
        for (const fs::path& like : {old, live, fileOf(live, Database::borrado)})
            if (isThere(like)) {
                takeRights(like, file);
                break;
            }
        if (const std::error_code error = owneronly::flush(file))
            throw fs::filesystem_error("no se puede escribir", file, error);
    }
}

std::string nameFrom(const fs::path& folder, const fs::path& file)
{
    const std::u8string text = file.lexically_relative(folder).generic_u8string();
    return {text.begin(), text.end()};
}

} // namespace

fs::path makingFolderOf(const fs::path& live) { return with(live, ".creando"); }

void replaceFiles(const fs::path& live, const fs::path& made, const fs::path& kept)
{
    for (const Database which : everyDatabase)
        if (isThere(fileOf(kept, which)))
            failFor(fileOf(kept, which), u"ya existe: llévelo a otro sitio y repita la orden.");
    const fs::path folder = live.parent_path();
    const fs::path intent = intentOf(live);
    // From here on stations that open the school wait: none comes between the look and the moves.
    std::error_code error =
        owneronly::write(intent, nameFrom(folder, made) + "\n" + nameFrom(folder, kept) + "\n");
    try {
        if (!error)
            ready(live, made);
    } catch (...) {
        std::error_code ignored;
        fs::remove(intent, ignored);
        throw;
    }
    if (!error)
        error = owneronly::place(intent, noteOf(live));
    if (error)
        throw fs::filesystem_error("no se puede escribir", noteOf(live), error);
    moveAll(live, made, kept);
    fs::remove(noteOf(live));
}

bool isBeingReplaced(const fs::path& live) { return isThere(noteOf(live)) || isThere(intentOf(live)); }

void finishLocked(const fs::path& given)
{
    const fs::path live = resolved(given);
    fs::remove(intentOf(live));
    const fs::path note = noteOf(live);
    if (!isThere(note))
        return;
    std::string made;
    std::string kept;
    {
        std::ifstream stream(note, std::ios::binary);
        if (!std::getline(stream, made) || !std::getline(stream, kept))
            throw fs::filesystem_error("no se puede leer", note, std::make_error_code(std::errc::io_error));
    }
    const auto from = [&](const std::string& name) {
        return live.parent_path() / std::u8string(name.begin(), name.end());
    };
    moveAll(live, from(made), from(kept));
    fs::remove(note);
}

void finishReplacing(const fs::path& given)
{
    const fs::path live = resolved(given);
    const auto begun = std::chrono::steady_clock::now();
    for (; isBeingReplaced(live); std::this_thread::sleep_for(waitStep)) {
        if (std::chrono::steady_clock::now() - begun > longestWait)
            failFor(live, u"se está restaurando: espere a que termine y repita la orden.");
        try {
            FolderLock lock;
            switch (lock.take(makingFolderOf(live))) {
            case FolderLock::Result::taken:
                finishLocked(live);
                lock.remove(makingFolderOf(live));
                break;
            case FolderLock::Result::gone:
                if (isBeingReplaced(live))
                    fs::create_directory(makingFolderOf(live));
                break;
            case FolderLock::Result::busy:
                break;
            case FolderLock::Result::noFolder:
            case FolderLock::Result::denied:
                throw fs::filesystem_error("", std::make_error_code(std::errc::permission_denied));
            }
        } catch (const fs::filesystem_error&) {
            failFor(live, u"se estaba restaurando y se cortó: ábralo quien pueda escribir en su carpeta, y "
                          u"termina.");
        }
    }
}

} // namespace zv::sqlite
