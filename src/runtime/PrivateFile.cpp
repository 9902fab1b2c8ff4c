#include "runtime/PrivateFile.h"

#include "runtime/OwnerOnly.h"

#include <random>
#include <string>
#include <system_error>

namespace zv {

namespace {

namespace fs = std::filesystem;

/// Random temporary name in the same folder, as a name can only be given within a file system.
fs::path nameBeside(const fs::path& file)
{
    std::random_device chance;
    fs::path name = file;
    return name += "." + std::to_string(chance()) + std::to_string(chance());
}

} // namespace

void makePrivateFolder(const fs::path& folder)
{
    if (folder.empty() || fs::is_directory(folder))
        return;
    if (fs::exists(folder))
        throw fs::filesystem_error("no se puede crear", folder, make_error_code(std::errc::not_a_directory));
    makePrivateFolder(folder.parent_path());
    owneronly::makeFolder(folder);
}

void replaceFile(const fs::path& file, std::string_view text)
{
    const fs::path draft = nameBeside(file);
    std::error_code error = owneronly::write(draft, text, owneronly::Readers::ofFolder);
    if (!error)
        error = owneronly::replace(draft, file);
    std::error_code ignored;
    if (error)
        fs::remove(draft, ignored);
    if (error)
        throw fs::filesystem_error("no se puede escribir", file, error);
}

void tryReplacing(const fs::path& file)
{
    const fs::path draft = nameBeside(file);
    std::error_code error = owneronly::write(draft, {}, owneronly::Readers::ofFolder);
    std::error_code ignored;
    fs::remove(draft, ignored);
    if (!error && fs::is_directory(file, ignored))
        error = make_error_code(std::errc::is_a_directory);
    if (error)
        throw fs::filesystem_error("no se puede escribir", file, error);
}

bool createPrivateFile(const fs::path& file, std::string_view text)
{
    makePrivateFolder(file.parent_path());
    const fs::path draft = nameBeside(file);
    std::error_code error = owneronly::write(draft, text);
    if (!error)
        error = owneronly::place(draft, file);
    std::error_code ignored;
    if (error)
        fs::remove(draft, ignored);
    if (error == std::errc::file_exists)
        return false;
    if (error)
        throw fs::filesystem_error("no se puede escribir", file, error);
    return true;
}

} // namespace zv
