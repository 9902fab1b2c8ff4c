#pragma once

#include <cstdint>
#include <filesystem>

namespace zv {

/// RAII lock that one program at a time has on a folder. It ends with the program that holds it, however that
/// ends.
class FolderLock {
public:
    enum class Result { taken, gone, busy, noFolder, denied };

    FolderLock() = default;
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;
    ~FolderLock();

    /// A link to a folder is no folder. Gone: nothing is there, or whoever held the lock removed the folder
    /// meanwhile.
    Result take(const std::filesystem::path& folder);
    /// Removes the locked folder if it is empty, and lets go.
    void remove(const std::filesystem::path& folder);

private:
    static constexpr std::intptr_t none = -1;
    void letGo();
    std::intptr_t handle_ = none;
};

} // namespace zv
