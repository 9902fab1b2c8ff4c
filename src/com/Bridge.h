#pragma once

#include "com/Objects.h"

namespace zv::com {

/// The process ends: its hosts may be gone already, and no object of theirs is let go of any more.
void leaveHostObjects();

} // namespace zv::com
