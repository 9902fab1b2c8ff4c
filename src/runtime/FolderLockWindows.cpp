#include "runtime/FolderLock.h"

#include <windows.h>

namespace zv {

FolderLock::Result FolderLock::take(const std::filesystem::path& folder)
{
    // A handle that writes and shares only reading is the lock: the folder is still listed, by its holder
    // too. What is in it is opened all the same.
    const HANDLE handle =
        CreateFileW(folder.c_str(), FILE_READ_ATTRIBUTES | FILE_ADD_FILE, FILE_SHARE_READ, nullptr,
                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        switch (GetLastError()) {
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
        // One that is about to go, as soon as its last handle does.
        case ERROR_DELETE_PENDING:
            return Result::gone;
        case ERROR_SHARING_VIOLATION:
            return Result::busy;
        default:
            return Result::denied;
        }
    BY_HANDLE_FILE_INFORMATION found{};
    constexpr DWORD kinds = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    if (GetFileInformationByHandle(handle, &found) == 0 ||
        (found.dwFileAttributes & kinds) != FILE_ATTRIBUTE_DIRECTORY) {
        CloseHandle(handle);
        return Result::noFolder;
    }
    handle_ = reinterpret_cast<std::intptr_t>(handle);
    return Result::taken;
}

void FolderLock::remove(const std::filesystem::path& folder)
{
    // The lock itself stands in the way. Whoever takes it in between keeps the folder.
    letGo();
    RemoveDirectoryW(folder.c_str());
}

void FolderLock::letGo()
{
    if (handle_ != none)
        CloseHandle(reinterpret_cast<HANDLE>(handle_));
    handle_ = none;
}

FolderLock::~FolderLock() { letGo(); }

} // namespace zv
