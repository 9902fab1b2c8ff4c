#pragma once

#include "forms/Keys.h"

#include <optional>

class QKeyEvent;

namespace zv {

/// Maps a key event to a key that the dialogs know; empty for one that belongs to the widget (shortcuts,
/// selecting with Shift, function keys).
std::optional<Keystroke> keystrokeOf(const QKeyEvent& event);
bool asksForHelp(const QKeyEvent& event);

} // namespace zv
