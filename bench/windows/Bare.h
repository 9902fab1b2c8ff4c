#pragma once

#include "win32/System.h"

#include <string>
#include <vector>

namespace zv::bench {

/// What a window of the system has of its own: enough to make another that looks like it.
struct Copy {
    std::wstring kind, text;
    DWORD style = 0;
    DWORD extended = 0;
    RECT place{};                      ///< Within its parent; on the screen, of the first.
    std::size_t parent = 0;            ///< Index of it.
    int size = 0;                      ///< Height of its letters, in pixels.
    std::vector<std::wstring> entries; ///< Of a drop-down list, or the captions of tabs.
    std::vector<int> columns;          ///< Widths, of a list in columns.
    int rows = 0;
};

/// A window and its controls, parents first.
std::vector<Copy> copied(HWND window);
/// Makes the same windows with nothing behind them, shows them, and gives back the first. Fonts are made
/// anew.
HWND makeBare(const std::vector<Copy>& copies, std::vector<HFONT>& fonts);
/// Dispatches what is pending, paint messages last.
void settle();

} // namespace zv::bench
