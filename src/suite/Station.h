#pragma once

#include "runtime/String.h"

#include <functional>

namespace zv {

/// A process that registers rows, as other stations see it.
struct Station {
    /// Globally unique, also over time; at most 200 units. Begins with machine and process number.
    String identity;
    /// Liveness check: whether the process behind another identity is known to have ended.
    std::function<bool(StringView identity)> gone;
    /// Whether it is known to run. Of a process on another machine neither is known.
    std::function<bool(StringView identity)> alive = nullptr;
};

/// The station of this process; constant.
const Station& thisStation();

} // namespace zv
