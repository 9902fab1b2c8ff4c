#include "runtime/OwnerOnly.h"

#include <memory>
#include <vector>
#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

namespace zv::owneronly {
namespace {

namespace fs = std::filesystem;

struct FreeLocal {
    void operator()(void* memory) const { LocalFree(memory); }
};
template <class T>
using Local = std::unique_ptr<T, FreeLocal>;

struct CloseHandleOf {
    void operator()(void* handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, CloseHandleOf>;

std::error_code lastError() { return {static_cast<int>(GetLastError()), std::system_category()}; }

/// The person in whose name this program runs: a TOKEN_USER, with what it points to.
std::vector<std::byte> person()
{
    HANDLE opened = nullptr;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &opened) == 0)
        return {};
    const Handle token(opened);
    DWORD size = 0;
    GetTokenInformation(token.get(), TokenUser, nullptr, 0, &size);
    std::vector<std::byte> result(size);
    if (GetTokenInformation(token.get(), TokenUser, result.data(), size, &size) == 0)
        return {};
    return result;
}

PSID identifierOf(const std::vector<std::byte>& user)
{
    return user.empty() ? nullptr : reinterpret_cast<const TOKEN_USER*>(user.data())->User.Sid;
}

/// An access list of the person, the system and the administrators, that takes nothing over from the folder
/// above. `inherited`: what stands in front of the rights, for a folder whose content is to have the same.
Local<void> closedToOthers(const wchar_t* inherited)
{
    const std::vector<std::byte> user = person();
    wchar_t* written = nullptr;
    if (user.empty() || ConvertSidToStringSidW(identifierOf(user), &written) == 0)
        return nullptr;
    const Local<wchar_t> own(written);
    std::wstring text = L"D:P";
    for (const wchar_t* who : {static_cast<const wchar_t*>(own.get()), L"SY", L"BA"})
        text += std::wstring(L"(A;") + inherited + L";FA;;;" + who + L")";
    void* descriptor = nullptr;
    ConvertStringSecurityDescriptorToSecurityDescriptorW(text.c_str(), SDDL_REVISION_1, &descriptor, nullptr);
    return Local<void>(descriptor);
}

bool isOneOf(PSID who, const std::vector<std::byte>& user)
{
    if (!user.empty() && EqualSid(who, identifierOf(user)) != 0)
        return true;
    for (const WELL_KNOWN_SID_TYPE known :
         {WinLocalSystemSid, WinBuiltinAdministratorsSid, WinCreatorOwnerSid, WinCreatorOwnerRightsSid})
        if (IsWellKnownSid(who, known) != 0)
            return true;
    return false;
}

} // namespace

std::error_code write(const fs::path& file, std::string_view text, Readers readers)
{
    const Local<void> list = readers == Readers::owner ? closedToOthers(L"") : nullptr;
    if (!list && readers == Readers::owner)
        return lastError();
    // Without a list it gets that of its folder.
    SECURITY_ATTRIBUTES security{sizeof security, list.get(), FALSE};
    HANDLE opened =
        CreateFileW(file.c_str(), GENERIC_WRITE, 0, &security, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (opened == INVALID_HANDLE_VALUE)
        return lastError();
    const Handle handle(opened);
    while (!text.empty()) {
        DWORD count = 0;
        if (WriteFile(opened, text.data(), static_cast<DWORD>(text.size()), &count, nullptr) == 0)
            return lastError();
        text.remove_prefix(count);
    }
    return FlushFileBuffers(opened) != 0 ? std::error_code() : lastError();
}

std::error_code place(const fs::path& draft, const fs::path& file)
{
    // Without the flag that lets it replace another, and so it finds out whether the file is there already.
    return MoveFileExW(draft.c_str(), file.c_str(), MOVEFILE_WRITE_THROUGH) != 0 ? std::error_code()
                                                                                 : lastError();
}

std::error_code replace(const fs::path& draft, const fs::path& file)
{
    constexpr DWORD how = MOVEFILE_WRITE_THROUGH | MOVEFILE_REPLACE_EXISTING;
    return MoveFileExW(draft.c_str(), file.c_str(), how) != 0 ? std::error_code() : lastError();
}

std::error_code flush(const fs::path& file)
{
    HANDLE opened = CreateFileW(file.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (opened == INVALID_HANDLE_VALUE)
        return lastError();
    const Handle handle(opened);
    return FlushFileBuffers(opened) != 0 ? std::error_code() : lastError();
}

void makeFolder(const fs::path& folder)
{
    const Local<void> list = closedToOthers(L"OICI");
    SECURITY_ATTRIBUTES security{sizeof security, list.get(), FALSE};
    if (CreateDirectoryW(folder.c_str(), &security) == 0 && GetLastError() != ERROR_ALREADY_EXISTS)
        throw fs::filesystem_error("no se puede crear la carpeta", folder, lastError());
}

bool openToOthers(const fs::path& file)
{
    ACL* list = nullptr;
    void* descriptor = nullptr;
    std::wstring name = file.wstring();
    // Whoever may not even see the list may not read the file either.
    if (GetNamedSecurityInfoW(name.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, &list,
                              nullptr, &descriptor) != ERROR_SUCCESS)
        return false;
    const Local<void> kept(descriptor);
    // A disk that keeps no lists lets everyone in.
    if (list == nullptr)
        return true;
    constexpr DWORD touches = FILE_READ_DATA | FILE_WRITE_DATA | FILE_APPEND_DATA | DELETE | WRITE_DAC |
                              WRITE_OWNER | GENERIC_ALL | GENERIC_READ | GENERIC_WRITE;
    const std::vector<std::byte> user = person();
    for (DWORD at = 0; at < list->AceCount; ++at) {
        void* found = nullptr;
        if (GetAce(list, at, &found) == 0)
            return true;
        auto* const entry = static_cast<ACCESS_ALLOWED_ACE*>(found);
        if (entry->Header.AceType == ACCESS_ALLOWED_ACE_TYPE &&
            (entry->Header.AceFlags & INHERIT_ONLY_ACE) == 0 && (entry->Mask & touches) != 0 &&
            !isOneOf(&entry->SidStart, user))
            return true;
    }
    return false;
}

StringView closingCommand() { return u"icacls FICHERO /inheritance:r /grant:r %USERNAME%:F"; }

} // namespace zv::owneronly
