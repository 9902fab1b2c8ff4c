#pragma once

#include "win32/System.h"

namespace zv::win32 {

/// What a window shows through its frame: all of it, or a part that scrolls where it is larger than the
/// screen. Measures are pixels.
class Sheet {
public:
    explicit Sheet(HWND window) : window_(window) {}
    /// Sizes the window for a sheet of that size, as far as the screen allows.
    void fit(SIZE whole);
    /// Which point of the sheet stands in the window's corner.
    POINT corner() const { return corner_; }
    /// Answers a scroll bar or the wheel.
    void scroll(int bar, WPARAM number);
    void turn(WPARAM number);
    /// Scrolls until that part of the window's inside is seen, its beginning at least.
    void reveal(const RECT& part);

private:
    void moveTo(POINT corner);
    SIZE page() const;
    HWND window_;
    SIZE whole_{};
    POINT corner_{};
};

} // namespace zv::win32
