#include "runtime/OwnerOnly.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace zv::owneronly {
namespace {

namespace fs = std::filesystem;

std::error_code lastError() { return {errno, std::generic_category()}; }

bool written(int handle, std::string_view text)
{
    while (!text.empty()) {
        const auto count = ::write(handle, text.data(), text.size());
        if (count <= 0)
            return false;
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return fsync(handle) == 0;
}

/// The directory's entry, which a crash would otherwise lose.
void flushFolderOf(const fs::path& file)
{
    flush(file.parent_path().empty() ? fs::path(".") : file.parent_path());
}

} // namespace

std::error_code write(const fs::path& file, std::string_view text, Readers readers)
{
    constexpr mode_t owners = S_IRUSR | S_IWUSR;
    constexpr mode_t all = owners | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
    const int handle =
        open(file.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, readers == Readers::owner ? owners : all);
    if (handle < 0)
        return lastError();
    std::error_code error;
    if (!written(handle, text))
        error = lastError();
    if (close(handle) != 0 && !error)
        error = lastError();
    return error;
}

std::error_code place(const fs::path& draft, const fs::path& file)
{
    // Hard link instead of rename: it fails if the target exists, atomically, where a rename would overwrite.
    std::error_code error;
    fs::create_hard_link(draft, file, error);
    std::error_code ignored;
    // Fallback: some disks have no hard links.
    if (error && error != std::errc::file_exists && fs::exists(draft, ignored) && !fs::exists(file, ignored))
        fs::rename(draft, file, error);
    fs::remove(draft, ignored);
    if (!error)
        flushFolderOf(file);
    return error;
}

std::error_code replace(const fs::path& draft, const fs::path& file)
{
    std::error_code error;
    fs::rename(draft, file, error);
    if (!error)
        flushFolderOf(file);
    return error;
}

std::error_code flush(const fs::path& file)
{
    const int handle = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (handle < 0)
        return lastError();
    std::error_code error;
    if (fsync(handle) != 0)
        error = lastError();
    close(handle);
    return error;
}

void makeFolder(const fs::path& folder)
{
    if (fs::create_directory(folder))
        fs::permissions(folder, fs::perms::owner_all);
}

bool openToOthers(const fs::path& file)
{
    return (fs::status(file).permissions() & (fs::perms::group_all | fs::perms::others_all)) !=
           fs::perms::none;
}

StringView closingCommand() { return u"chmod 600"; }

} // namespace zv::owneronly
