#pragma once

#include "forms/Keys.h"
#include "views/PupilGuide.h"

#include <optional>

class QKeyEvent;

namespace zv {

/// Maps a key event to a key that the dialogs know; empty for one that belongs to the widget (shortcuts,
/// selecting with Shift, function keys).
std::optional<Keystroke> keystrokeOf(const QKeyEvent& event);
/// The same as a chord that a section may have a macro for.
std::optional<Chord> chordOf(const QKeyEvent& event);
bool asksForHelp(const QKeyEvent& event);

} // namespace zv
