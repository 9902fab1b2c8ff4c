#include "runtime/PrivateFile.h"

#include <cerrno>
#include <random>
#include <string>
#include <system_error>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace zv {

namespace {

namespace fs = std::filesystem;

#ifdef _WIN32
int openNew(const fs::path& file)
{
    return _wopen(file.c_str(), _O_CREAT | _O_EXCL | _O_WRONLY | _O_BINARY, _S_IREAD | _S_IWRITE);
}
auto writeSome(int handle, std::string_view text)
{
    return _write(handle, text.data(), static_cast<unsigned>(text.size()));
}
bool flushed(int handle) { return _commit(handle) == 0; }
bool closed(int handle) { return _close(handle) == 0; }
void flushFolder(const fs::path&) {}
#else
int openNew(const fs::path& file)
{
    return open(file.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR);
}
auto writeSome(int handle, std::string_view text) { return write(handle, text.data(), text.size()); }
bool flushed(int handle) { return fsync(handle) == 0; }
bool closed(int handle) { return close(handle) == 0; }
/// So that a new name outlives the machine's sudden end.
void flushFolder(const fs::path& folder)
{
    const int handle = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle >= 0) {
        fsync(handle);
        close(handle);
    }
}
#endif

[[noreturn]] void failed(const fs::path& file)
{
    throw fs::filesystem_error("no se puede escribir", file, std::error_code(errno, std::generic_category()));
}

bool written(int handle, std::string_view text)
{
    while (!text.empty()) {
        const auto count = writeSome(handle, text);
        if (count <= 0)
            return false;
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return flushed(handle);
}

void makeFolder(const fs::path& folder)
{
    if (folder.empty() || fs::is_directory(folder))
        return;
    makeFolder(folder.parent_path());
    if (fs::create_directory(folder))
        fs::permissions(folder, fs::perms::owner_all);
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
    makeFolder(file.parent_path());
    const fs::path draft = nameBeside(file);
    const int handle = openNew(draft);
    if (handle < 0)
        failed(draft);
    std::error_code error;
    if (!written(handle, text))
        error = std::error_code(errno, std::generic_category());
    if (!closed(handle) && !error)
        error = std::error_code(errno, std::generic_category());
    // The second name is the only step that finds out whether the file is there already.
    if (!error)
        fs::create_hard_link(draft, file, error);
    std::error_code ignored;
    fs::remove(draft, ignored);
    if (error == std::errc::file_exists)
        return false;
    if (error)
        throw fs::filesystem_error("no se puede escribir", file, error);
    flushFolder(file.parent_path().empty() ? fs::path(".") : file.parent_path());
    return true;
}

bool openToOthers(const fs::path& file)
{
#ifdef _WIN32
    static_cast<void>(file);
    return false;
#else
    return (fs::status(file).permissions() & (fs::perms::group_all | fs::perms::others_all)) !=
           fs::perms::none;
#endif
}

} // namespace zv
