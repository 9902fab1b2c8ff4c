#include "win32/Help.h"

#include "forms/Desktop.h"
#include "win32/Message.h"

#include <filesystem>

#include <shellapi.h>

namespace zv::win32 {

namespace {

constexpr INT_PTR opened = 32; ///< What is above says that a file was opened.

/// Folder of a loaded module; of the program for none.
std::filesystem::path folderOf(HMODULE module)
{
    std::wstring file(0x8000, L'\0');
    file.resize(GetModuleFileNameW(module, file.data(), static_cast<DWORD>(file.size())));
    return std::filesystem::path(file).parent_path();
}

/// Module that this code is part of: the program, or the library that a host has loaded from elsewhere.
HMODULE ownModule()
{
    HMODULE own = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&showHelp), &own);
    return own;
}

bool openFile(HWND owner, const std::filesystem::path& file)
{
    std::error_code none;
    return std::filesystem::is_regular_file(file, none) &&
           reinterpret_cast<INT_PTR>(
               ShellExecuteW(owner, nullptr, file.c_str(), nullptr, nullptr, SW_SHOWNORMAL)) > opened;
}

} // namespace

void showHelp(HWND owner, const String& page)
{
    if (openFile(owner, std::filesystem::path(helpFile())))
        return;
    for (HMODULE const module : {HMODULE(nullptr), ownModule()})
        if (openFile(owner, folderOf(module) / "manual" / (page + u".html")))
            return;
    showMessage(owner, u"No está la ayuda: falta el fichero de ayuda del programa, y la carpeta «manual».",
                sign::information, u"Ayuda");
}

} // namespace zv::win32
