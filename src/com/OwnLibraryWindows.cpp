#include "com/OwnLibrary.h"

#include "com/Failure.h"

#include <windows.h>

#include <oleauto.h>

namespace zv::com {

std::wstring ownFile()
{
    HMODULE own = nullptr;
    const DWORD how = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (GetModuleHandleExW(how, reinterpret_cast<const wchar_t*>(&ownFile), &own) == 0)
        throw Refusal{ZV_E_REGISTRATION};
    constexpr std::size_t longest = 32768; // Of any path.
    std::wstring file(longest, L'\0');
    file.resize(GetModuleFileNameW(own, file.data(), longest));
    if (file.empty())
        throw Refusal{ZV_E_REGISTRATION};
    return file;
}

System<ITypeLib> ownTypes()
{
    ITypeLib* types = nullptr;
    const HRESULT loaded = LoadTypeLibEx(ownFile().c_str(), REGKIND_NONE, &types);
    return System<ITypeLib>(FAILED(loaded) ? nullptr : types);
}

} // namespace zv::com
