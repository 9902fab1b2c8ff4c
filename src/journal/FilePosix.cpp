#include "journal/File.h"

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zv::journal {
namespace {

std::error_code lastError() { return {errno, std::generic_category()}; }

/// Syncs the directory entry, which a power cut would otherwise lose with the file.
void syncFolder(const std::filesystem::path& folder)
{
    const int handle = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle >= 0) {
        fsync(handle);
        close(handle);
    }
}

} // namespace

struct File::Handle {
    int descriptor = -1;
    off_t length = 0;
    std::atomic<bool> named = false; ///< The directory entry is on the disk.
};

File::File(const std::filesystem::path& path) : path_(path), handle_(std::make_unique<Handle>())
{
    handle_->descriptor = open(path.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (handle_->descriptor < 0)
        throw std::system_error(lastError());
    // Blocking: another program that asks at this moment whether it is in use holds it for an instant.
    while (flock(handle_->descriptor, LOCK_EX) != 0 && errno == EINTR) {
    }
}

File::~File() { close(handle_->descriptor); }

std::error_code File::append(std::string_view bytes)
{
    std::size_t written = 0;
    while (written < bytes.size()) {
        const auto count = pwrite(handle_->descriptor, bytes.data() + written, bytes.size() - written,
                                  handle_->length + static_cast<off_t>(written));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0) {
            const std::error_code error = lastError();
            static_cast<void>(!ftruncate(handle_->descriptor, handle_->length));
            return error;
        }
        written += static_cast<std::size_t>(count);
    }
    handle_->length += static_cast<off_t>(written);
    return {};
}

std::error_code File::sync()
{
    if (fdatasync(handle_->descriptor) != 0)
        return lastError();
    if (!handle_->named)
        syncFolder(path_.parent_path());
    handle_->named = true;
    return {};
}

std::error_code File::empty()
{
    struct stat now {};
    if (fstat(handle_->descriptor, &now) != 0 || ftruncate(handle_->descriptor, 0) != 0)
        return lastError();
    handle_->length = 0;
    return now.st_nlink > 0 ? std::error_code() : make_error_code(std::errc::no_such_file_or_directory);
}

bool inUse(const std::filesystem::path& path)
{
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    const bool held = flock(descriptor, LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    close(descriptor);
    return held;
}

} // namespace zv::journal
