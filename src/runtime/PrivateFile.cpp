#include "runtime/PrivateFile.h"

#include "runtime/OwnerOnly.h"

#include <random>
#include <string>
#include <system_error>

namespace zv {

namespace {

namespace fs = std::filesystem;

void makeFolders(const fs::path& folder)
{
    if (folder.empty() || fs::is_directory(folder))
        return;
    makeFolders(folder.parent_path());
    owneronly::makeFolder(folder);
}

/// A name beside the file that no other program draws.
fs::path nameBeside(const fs::path& file)
{
    std::random_device chance;
    fs::path name = file;
    return name += "." + std::to_string(chance()) + std::to_string(chance());
}

} // namespace

bool createPrivateFile(const fs::path& file, std::string_view text)
{
    makeFolders(file.parent_path());
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

bool openToOthers(const fs::path& file) { return owneronly::openToOthers(file); }

} // namespace zv
