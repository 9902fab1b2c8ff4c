#pragma once

#include "win32/System.h"

#include <functional>

namespace zv::win32 {

/// What a window shows through its frame: all of it, or a part that scrolls where it is larger than the
/// screen. Measures are pixels.
class Sheet {
public:
    /// `moved` is called when what stands on the sheet is to follow it.
    Sheet(HWND window, std::function<void()> moved) : window_(window), moved_(std::move(moved)) {}
    /// What there may be inside a window on its screen.
    SIZE room() const;
    /// Sizes the window for a sheet of that size, as far as the screen allows, between so much over and under
    /// it; `least` is what that needs across.
    void fit(SIZE whole, int over, int under, int least);
    /// Where the sheet's corner stands in the window.
    POINT origin() const { return {-corner_.x, over_ - corner_.y}; }
    /// How much of it is seen.
    SIZE page() const;
    /// Answers a scroll bar or the wheel.
    void scroll(int bar, WPARAM number);
    void turn(WPARAM number);
    /// Scrolls until that part of the window's inside is seen, its beginning at least.
    void reveal(const RECT& part);

private:
    void moveTo(POINT corner);
    HWND window_;
    std::function<void()> moved_;
    int over_ = 0;
    int under_ = 0;
    SIZE whole_{};
    POINT corner_{}; ///< Which point of the sheet is the first that is seen.
};

} // namespace zv::win32
