#include "journal/File.h"

#include "runtime/OwnerOnly.h"

#include <windows.h>

namespace zv::journal {
namespace {

std::error_code lastError() { return {static_cast<int>(GetLastError()), std::system_category()}; }

} // namespace

struct File::Handle {
    HANDLE file = INVALID_HANDLE_VALUE;
    LONGLONG length = 0;
};

/// Share mode as lock: others may read and delete the file, and none may write it while it is open.
File::File(const std::filesystem::path& path) : path_(path), handle_(std::make_unique<Handle>())
{
    if (const std::error_code error = owneronly::write(path, {}))
        throw std::system_error(error);
    handle_->file = CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                                OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle_->file == INVALID_HANDLE_VALUE)
        throw std::system_error(lastError());
}

File::~File() { CloseHandle(handle_->file); }

std::error_code File::append(std::string_view bytes)
{
    DWORD written = 0;
    if (WriteFile(handle_->file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) != 0 &&
        written == bytes.size()) {
        handle_->length += written;
        return {};
    }
    const std::error_code error = lastError();
    LARGE_INTEGER end{};
    end.QuadPart = handle_->length;
    SetFilePointerEx(handle_->file, end, nullptr, FILE_BEGIN);
    SetEndOfFile(handle_->file);
    return error;
}

std::error_code File::sync()
{
    return FlushFileBuffers(handle_->file) != 0 ? std::error_code() : lastError();
}

std::error_code File::empty()
{
    handle_->length = 0;
    if (SetFilePointerEx(handle_->file, {}, nullptr, FILE_BEGIN) == 0 || SetEndOfFile(handle_->file) == 0)
        return lastError();
    return {};
}

bool inUse(const std::filesystem::path& path)
{
    const HANDLE file =
        CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return GetLastError() == ERROR_SHARING_VIOLATION;
    CloseHandle(file);
    return false;
}

} // namespace zv::journal
