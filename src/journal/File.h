#pragma once

#include <filesystem>
#include <memory>
#include <string_view>
#include <system_error>

namespace zv::journal {

/// A new file for its owner alone, which is appended to and locked while it is open: the lock goes with the
/// process, however that ends. As each system does it.
class File {
public:
    /// Fails with a std::system_error.
    explicit File(const std::filesystem::path& path);
    ~File();
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    /// Appends at once, for all to see who read the file; not necessarily on the disk yet. What could only be
    /// written in part is taken back.
    std::error_code append(std::string_view bytes);
    /// Returns when all that was appended is on the disk. May be called while another thread appends.
    std::error_code sync();
    /// Takes out all that was appended. Fails also where the file has been deleted meanwhile.
    std::error_code empty();
    const std::filesystem::path& path() const { return path_; }

private:
    struct Handle;
    std::filesystem::path path_;
    std::unique_ptr<Handle> handle_;
};

/// Whether a running program holds the file open to write it.
bool inUse(const std::filesystem::path& path);

} // namespace zv::journal
