#pragma once

#include "robot/Play.h"

namespace zv::win32 {

/// Factory of stages in windows of the system: the person sends them synthetic key and mouse messages. What
/// cannot be seen (a cell that is scrolled away, say) is acted upon through the model.
Stage win32Stage(Play& play);

} // namespace zv::win32
