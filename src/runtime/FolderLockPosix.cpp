#include "runtime/FolderLock.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zv {

FolderLock::Result FolderLock::take(const std::filesystem::path& folder)
{
    const int handle = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (handle < 0)
        return errno == ENOENT                      ? Result::gone
               : errno == ELOOP || errno == ENOTDIR ? Result::noFolder
                                                    : Result::denied;
    struct stat locked {};
    struct stat there {};
    const bool free = flock(handle, LOCK_EX | LOCK_NB) == 0;
    if (free && fstat(handle, &locked) == 0 && stat(folder.c_str(), &there) == 0 &&
        locked.st_dev == there.st_dev && locked.st_ino == there.st_ino) {
        handle_ = handle;
        return Result::taken;
    }
    close(handle);
    return free ? Result::gone : Result::busy;
}

void FolderLock::remove(const std::filesystem::path& folder)
{
    std::error_code ignored;
    std::filesystem::remove(folder, ignored);
    letGo();
}

void FolderLock::letGo()
{
    if (handle_ != none)
        close(static_cast<int>(handle_));
    handle_ = none;
}

FolderLock::~FolderLock() { letGo(); }

} // namespace zv
