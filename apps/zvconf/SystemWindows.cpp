#include "zvconf/System.h"

#include "win32/Win32Desktop.h"
#include "win32/stage/Win32Gallery.h"
#include "win32/stage/Win32Stage.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <fcntl.h>
#include <io.h>
#include <iostream>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <windows.h>

#include <objbase.h>
#include <shellapi.h>

namespace zv::zvconf {
namespace {

constexpr std::size_t mostOutput = 65536;

struct CloseHandleOf {
    void operator()(void* handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, CloseHandleOf>;

void check(BOOL succeeded)
{
    if (succeeded == 0)
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
}

/// A word of a command line as programs part it: backslashes count only before quotes.
std::wstring quotedWord(const String& word)
{
    std::wstring result = L"\"";
    std::size_t slashes = 0;
    for (const char16_t each : word) {
        if (each == u'"')
            result.append(slashes + 1, L'\\');
        slashes = each == u'\\' ? slashes + 1 : 0;
        result += static_cast<wchar_t>(each);
    }
    return result.append(slashes, L'\\') + L"\"";
}

std::wstring ownPath()
{
    std::wstring path(512, L'\0');
    for (;;) {
        const DWORD size = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        check(size > 0);
        if (size < path.size())
            return path.substr(0, size);
        path.resize(path.size() * 2);
    }
}

/// A pipe: the end that a child inherits, and ours.
struct Pipe {
    Handle its, ours;
    Pipe(bool childReads, std::size_t size)
    {
        SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
        HANDLE reading = nullptr;
        HANDLE writing = nullptr;
        check(CreatePipe(&reading, &writing, &inherited, static_cast<DWORD>(size)));
        its.reset(childReads ? reading : writing);
        ours.reset(childReads ? writing : reading);
        check(SetHandleInformation(ours.get(), HANDLE_FLAG_INHERIT, 0));
    }
};

/// Starts the program between two pipes: the first is filled with what it reads, and the reading end of the
/// other comes back. A child gets all that may be inherited at that moment: one by one, or it would hold
/// another's pipe open.
Handle started(std::wstring line, std::string_view text, Handle& output)
{
    static std::mutex one;
    const std::scoped_lock lock(one);
    // Its room takes all that is written before anybody reads.
    const Pipe input(true, text.size() + 1);
    Pipe told(false, 0);
    DWORD count = 0;
    check(WriteFile(input.ours.get(), text.data(), static_cast<DWORD>(text.size()), &count, nullptr));
    STARTUPINFOW how{};
    how.cb = sizeof how;
    how.dwFlags = STARTF_USESTDHANDLES;
    how.hStdInput = input.its.get();
    how.hStdOutput = told.its.get();
    how.hStdError = told.its.get();
    PROCESS_INFORMATION child{};
    check(CreateProcessW(ownPath().c_str(), line.data(), nullptr, nullptr, TRUE, CREATE_NEW_PROCESS_GROUP,
                         nullptr, nullptr, &how, &child));
    CloseHandle(child.hThread);
    output = std::move(told.ours);
    return Handle(child.hProcess);
}

} // namespace

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

ChildEnd runSelf(const std::vector<String>& arguments, std::string_view input,
                 std::chrono::milliseconds longest)
{
    std::wstring line = L"zvconf";
    for (const String& each : arguments)
        line += L" " + quotedWord(each);
    Handle output;
    const Handle child = started(std::move(line), input, output);
    ChildEnd end;
    std::jthread watch([&end, &child, longest] {
        if (WaitForSingleObject(child.get(), static_cast<DWORD>(longest.count())) != WAIT_TIMEOUT)
            return;
        end.outOfTime = true;
        TerminateProcess(child.get(), 1);
    });
    std::array<char, 4096> piece{};
    // Read to the end, so that the writer is not held up.
    for (DWORD count = 0; ReadFile(output.get(), piece.data(), piece.size(), &count, nullptr) != 0;)
        end.output.append(piece.data(), std::min<std::size_t>(count, mostOutput - end.output.size()));
    watch.join();
    WaitForSingleObject(child.get(), INFINITE);
    DWORD code = 0;
    check(GetExitCodeProcess(child.get(), &code));
    end.code = static_cast<int>(code);
    return end;
}

void outliveReaders() {}

bool isErrorShown()
{
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode) != 0;
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
