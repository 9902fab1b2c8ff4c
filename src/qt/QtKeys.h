#pragma once

#include "forms/Keys.h"

#include <optional>

class QKeyEvent;

namespace zv {

/// The key that the dialogs know behind a key event, or none: then it belongs to the widget (shortcuts,
/// selecting with Shift, function keys).
std::optional<Keystroke> keystrokeOf(const QKeyEvent& event);
/// Whether a person presses the key for help.
bool asksForHelp(const QKeyEvent& event);

} // namespace zv
