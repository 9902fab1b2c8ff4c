#pragma once

#include "runtime/String.h"

// For the names of the system's own pointers, say, which its macros take from it.
#ifndef UNICODE
#define UNICODE
#endif
// Before the other headers of the system, which want it.
#include <windows.h>

#include <commctrl.h>

#include <span>
#include <utility>

namespace zv::win32 {

inline const wchar_t* wide(const String& text) { return reinterpret_cast<const wchar_t*>(text.c_str()); }
inline StringView narrow(const wchar_t* text, std::size_t length)
{
    return {reinterpret_cast<const char16_t*>(text), length};
}

/// Sends a message with a pointer in it, as the system's own macros do.
template <class T>
LRESULT send(HWND window, UINT message, WPARAM number, T* data)
{
    return SendMessageW(window, message, number, reinterpret_cast<LPARAM>(data));
}
inline LRESULT send(HWND window, UINT message, WPARAM number = 0, LPARAM data = 0)
{
    return SendMessageW(window, message, number, data);
}

/// RAII guard: windows are made, and sizes told, for the resolution of each screen as it is, whatever the
/// host's own windows are made for. Systems that know no such thing make them for the host's.
class PerScreen {
public:
    PerScreen();
    PerScreen(const PerScreen&) = delete;
    PerScreen& operator=(const PerScreen&) = delete;
    ~PerScreen();

private:
    DPI_AWARENESS_CONTEXT before_;
};

/// RAII guard: windows are made with the system's controls of today, which the manifest of this library asks
/// for, whatever the host's own are. Without effect in a program whose manifest asks for them already.
class OwnControls {
public:
    OwnControls();
    OwnControls(const OwnControls&) = delete;
    OwnControls& operator=(const OwnControls&) = delete;
    ~OwnControls();

private:
    HANDLE context_;
    ULONG_PTR cookie_ = 0;
};

/// Answers a control's question for its colours: those of what is written on the ground of a window.
LRESULT onGround(WPARAM device);

/// Dots per inch of the screen that shows the window.
int dotsOf(HWND window);
/// How much larger the system's letters are than the dialogs' own.
double systemLetters();
/// Grows what a window is to show by its frame.
void addFrame(RECT& inside, HWND window);
/// What a screen leaves to windows, of the screen that shows most of that one.
RECT workAreaOf(HWND window);

/// RAII guard: as long as one lives on a thread, texts are measured with one device, which is costly to ask
/// for.
class Measuring {
public:
    Measuring();
    Measuring(const Measuring&) = delete;
    Measuring& operator=(const Measuring&) = delete;
    ~Measuring();

private:
    bool first_; ///< On its thread.
};

/// RAII owner of a font.
class Font {
public:
    Font() = default;
    /// The system's own for dialogs, so many pixels high.
    explicit Font(int pixels);
    Font(Font&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
    Font& operator=(Font&& other) noexcept
    {
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~Font();
    HFONT handle() const { return handle_; }
    /// The same, as high, its letters so many hundredths as wide.
    Font narrowed(int hundredths) const;
    int height() const;
    /// Of a text that is broken into lines of that width.
    int height(const String& text, int across) const;
    int width(StringView text) const { return widest({&text, 1}); }
    /// Width of the widest of the texts.
    int widest(std::span<const StringView> texts) const;

private:
    HFONT handle_ = nullptr;
};

} // namespace zv::win32
