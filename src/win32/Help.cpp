#include "win32/Help.h"

#include "forms/Desktop.h"
#include "win32/Message.h"

#include <filesystem>

#include <shellapi.h>

namespace zv::win32 {

namespace {

constexpr INT_PTR opened = 32; ///< What is above says that a file was opened.

std::filesystem::path programFolder()
{
    std::wstring file(0x8000, L'\0');
    file.resize(GetModuleFileNameW(nullptr, file.data(), static_cast<DWORD>(file.size())));
    return std::filesystem::path(file).parent_path();
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
    if (!openFile(owner, programFolder() / "manual" / (page + u".md")))
        showMessage(owner,
                    u"No está la ayuda: falta el fichero de ayuda del programa, y la carpeta «manual».",
                    sign::information, u"Ayuda");
}

} // namespace zv::win32
