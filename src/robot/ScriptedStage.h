#pragma once

#include "robot/Play.h"

namespace zv {

/// Headless stage: the desktop forwards to the play, message boxes return at once, and the person acts on the
/// forms directly (Acts).
Stage scriptedStage(Play& play);

} // namespace zv
