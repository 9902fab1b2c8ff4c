#pragma once

#include "forms/Desktop.h"

#include <memory>

namespace zv::com {

/// Where a library's dialogs are shown, and what it needs around it.
class Screen {
public:
    Screen() = default;
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;
    virtual ~Screen() = default;
    virtual Desktop& desktop() = 0;
};

/// The screen of this process; nullptr where there is none. A library has one of the two implementations.
std::unique_ptr<Screen> openScreen();

} // namespace zv::com
