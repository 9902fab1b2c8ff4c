#pragma once

#include "robot/Play.h"

namespace zv {

/// A stage without a screen: dialogs are shown to the play alone, message boxes are answered at once, and the
/// person acts on the forms themselves.
Stage scriptedStage(Play& play);

} // namespace zv
