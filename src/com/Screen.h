#pragma once

#include "forms/Desktop.h"

#include <functional>
#include <memory>

namespace zv::com {

/// Thread affinity of the windows: whether the calling thread may use them, another one, or none any more.
enum class Reach { here, elsewhere, gone };

/// Port to a screen for a library: a desktop, with the toolkit's application around it.
class Screen {
public:
    Screen() = default;
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;
    virtual ~Screen() = default;
    virtual Desktop& desktop() = 0;
    virtual Reach reach() const = 0;
};

/// Factory; nullptr if there is no screen. Link-time choice: a library has one of the implementations. If
/// the screen is bound to the calling thread, the callback `ended` runs when that thread ends, and must
/// destroy it.
std::unique_ptr<Screen> openScreen(const std::function<void()>& ended);

} // namespace zv::com
