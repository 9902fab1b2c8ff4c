#pragma once

#include "forms/Desktop.h"

#include <functional>
#include <memory>

namespace zv::com {

/// Where windows can be used, seen from the calling thread.
enum class Reach { here, elsewhere, gone };

/// Where a library's dialogs are shown, and what it needs around it.
class Screen {
public:
    Screen() = default;
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;
    virtual ~Screen() = default;
    virtual Desktop& desktop() = 0;
    virtual Reach reach() const = 0;
};

/// The screen of this process; nullptr where there is none. A library has one of the two implementations.
/// Where it belongs to the calling thread, `ended` is called there when that thread ends, and lets go of it.
std::unique_ptr<Screen> openScreen(const std::function<void()>& ended);

} // namespace zv::com
