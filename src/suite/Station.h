#pragma once

#include "runtime/String.h"

#include <functional>

namespace zv {

/// A running program that registers rows, as other stations see it.
struct Station {
    /// Unique among all stations at all times, at most 200 units. Begins with machine and process number.
    String identity;
    /// Whether the program behind another identity is known to have ended.
    std::function<bool(StringView identity)> gone;
    /// Whether it is known to run. Of a program on another machine neither is known.
    std::function<bool(StringView identity)> alive = nullptr;
};

/// This process on this machine: the same for as long as it runs.
const Station& thisStation();

} // namespace zv
