#pragma once

#include "robot/Play.h"

#include <chrono>

namespace zv {

/// A stage of real windows: the person sends them key and mouse events, and takes so long over each act. What
/// cannot be seen (a cell that is scrolled away, say) is acted upon directly. Needs a QApplication around it.
StageMaker qtStage(std::chrono::milliseconds pace);

} // namespace zv
