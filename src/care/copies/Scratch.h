#pragma once

#include "data/Engine.h"
#include "runtime/FolderLock.h"

#include <cstdint>
#include <filesystem>
#include <vector>

namespace zv::care {

/// Closes a file or a folder, as far as the disk knows of owners: a stick with the files of other systems
/// does not.
void closeToOthers(const std::filesystem::path& place, std::filesystem::perms owners);

/// RAII scratch folder of its own name, for its owner alone; the destructor removes it. It is locked while
/// its process lives, so that what killed ones left is removed by the next in the same folder.
class Scratch {
public:
    /// In the first of the folders (empty: the working one) that takes it and has room for so many bytes.
    /// Fails with a std::filesystem::filesystem_error.
    explicit Scratch(const std::vector<std::filesystem::path>& folders, std::uintmax_t room = 0);
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    ~Scratch();

    std::filesystem::path file(Database which, const char* name) const;
    String url(const char* name) const;

private:
    std::filesystem::path folder_;
    FolderLock lock_;
};

} // namespace zv::care
