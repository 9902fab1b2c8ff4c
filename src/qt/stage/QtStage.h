#pragma once

#include "robot/Play.h"

#include <chrono>

namespace zv {

/// Factory of stages in real windows: the person sends them synthetic key and mouse events, `pace` apart.
/// What cannot be seen (a cell that is scrolled away, say) is acted upon through the model. Needs a
/// QApplication around it.
StageMaker qtStage(std::chrono::milliseconds pace);

} // namespace zv
