#pragma once

#include "runtime/Single.h"
#include "runtime/String.h"

namespace zv {

/// What the module sets of its host's process: the help file, a path under the host's application folder.
/// The one instance is single<App>().
struct App {
    String HelpFile;
};

} // namespace zv
