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

/// So that a new name outlives the machine's sudden end.
void flushFolder(const fs::path& folder)
{
    const int handle = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle >= 0) {
        fsync(handle);
        close(handle);
    }
}

} // namespace

std::error_code write(const fs::path& file, std::string_view text)
{
    const int handle = open(file.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR);
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
    // The second name is the only step that finds out whether the file is there already.
    std::error_code error;
    fs::create_hard_link(draft, file, error);
    std::error_code ignored;
    fs::remove(draft, ignored);
    if (!error)
        flushFolder(file.parent_path().empty() ? fs::path(".") : file.parent_path());
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

} // namespace zv::owneronly
