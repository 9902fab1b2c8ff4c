#pragma once

#include "runtime/Single.h"
#include "runtime/String.h"

namespace zv {

/// Single instance of what the module sets in its host's process: the help file, a path under the host's
/// application folder.
struct App {
    String HelpFile;
};

} // namespace zv
