#include "zvconf/System.h"

#include "win32/Win32Desktop.h"
#include "win32/stage/Win32Gallery.h"
#include "win32/stage/Win32Stage.h"

#include <csignal>
#include <fcntl.h>
#include <io.h>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <windows.h>

#include <objbase.h>
#include <shellapi.h>

namespace zv::zvconf {

// The arguments that main gets are in the code page of the system, which lacks letters.
std::vector<String> commandLine(std::span<char*> /*arguments*/)
{
    int count = 0;
    const std::unique_ptr<wchar_t*, decltype(&LocalFree)> all(CommandLineToArgvW(GetCommandLineW(), &count),
                                                              LocalFree);
    std::vector<String> words;
    for (int at = 1; all && at < count; ++at) {
        const std::wstring_view word = all.get()[at];
        words.emplace_back(word.begin(), word.end());
    }
    return words;
}

// Ctrl-C; the end of the session or of a service; Ctrl-Break and the closing of the console's window.
std::span<const int> endingSignals()
{
    static constexpr int signals[] = {SIGINT, SIGTERM, SIGBREAK};
    return signals;
}

/// Where nobody sees a screen the system makes no window, or Wine none.
static void needScreen()
{
    HWND window =
        CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
    if (window == nullptr)
        throw std::runtime_error(
            "Aquí no hay pantalla en que abrir ventanas: dé la orden en la sesión de una persona.");
    DestroyWindow(window);
}

StageMaker windowStage()
{
    needScreen();
    return win32::win32Stage;
}

std::unique_ptr<Desktop> windowDesktop()
{
    // For the process: each window tells screen readers what it is through COM.
    static_cast<void>(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
    needScreen();
    auto desktop = std::make_unique<win32::Win32Desktop>();
    desktop->rememberZoom();
    desktop->keepDrafts();
    return desktop;
}

Gallery drawWindows(const String& folder, const School& school)
{
    static_cast<void>(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
    needScreen();
    return win32::drawGallery(folder, school);
}

Utf8Output::Utf8Output()
{
    for (const int stream : {1, 2})
        _setmode(stream, _O_BINARY);
    for (const DWORD stream : {STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) {
        DWORD mode = 0;
        if (before_ == 0 && GetConsoleMode(GetStdHandle(stream), &mode) != 0)
            before_ = GetConsoleOutputCP();
    }
    if (before_ != 0)
        SetConsoleOutputCP(CP_UTF8);
}

Utf8Output::~Utf8Output()
{
    std::cout.flush();
    if (before_ != 0)
        SetConsoleOutputCP(before_);
}

} // namespace zv::zvconf
