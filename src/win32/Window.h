#pragma once

#include "win32/System.h"

namespace zv::win32 {

/// RAII owner of a window of the system, of which this class gets the messages first.
class Window {
public:
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    virtual ~Window();
    HWND handle() const { return handle_; }
    /// Lookup: the owner of a window, or nullptr for another's.
    static Window* of(HWND window);
    /// Rethrows what a message's routine threw: the system's own routines know no exceptions, so that it was
    /// held back (exception_ptr) until they had returned.
    static void rethrowHeld();

    /// Message that a child sends to its parent (of a press, a choice, what is to be drawn), handed back to
    /// the child that sent it. True with `result` set: it needs no more.
    virtual bool told(UINT, WPARAM, LPARAM, LRESULT&) { return false; }

protected:
    /// One that the system has made, and destroys.
    explicit Window(HWND made);
    /// Of one of the system's classes, or of ourClass.
    Window(const wchar_t* kind, DWORD style, DWORD extended, HWND parent);
    /// A message for this window.
    virtual LRESULT receive(UINT message, WPARAM number, LPARAM data);
    /// What the window's class does with it.
    LRESULT inherited(UINT message, WPARAM number, LPARAM data)
    {
        return CallWindowProcW(before_, handle_, message, number, data);
    }
    static const wchar_t* ourClass();

private:
    void hook();
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM number, LPARAM data);
    HWND handle_;
    bool owned_ = true;
    WNDPROC before_ = nullptr;
};

} // namespace zv::win32
