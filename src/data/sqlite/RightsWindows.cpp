#include "data/sqlite/Rights.h"

#include <windows.h>

#include <aclapi.h>

namespace zv::sqlite {

void takeRights(const std::filesystem::path& from, const std::filesystem::path& to)
{
    ACL* list = nullptr;
    PSID owner = nullptr;
    void* descriptor = nullptr;
    std::wstring name = from.wstring();
    if (GetNamedSecurityInfoW(name.data(), SE_FILE_OBJECT,
                              OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION, &owner, nullptr, &list,
                              nullptr, &descriptor) != ERROR_SUCCESS)
        return;
    name = to.wstring();
    if (list != nullptr)
        SetNamedSecurityInfoW(name.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, list,
                              nullptr);
    SetNamedSecurityInfoW(name.data(), SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION, owner, nullptr, nullptr,
                          nullptr);
    LocalFree(descriptor);
}

} // namespace zv::sqlite
