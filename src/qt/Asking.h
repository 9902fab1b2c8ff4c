#pragma once

#include "views/WindowAids.h"

class QWidget;

namespace zv {

/// Asks in a modal box over that window; true for `yes`.
bool asks(QWidget& owner, const Question& question);

} // namespace zv
