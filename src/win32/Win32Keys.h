#pragma once

#include "forms/Keys.h"
#include "views/Magnification.h"
#include "views/PupilGuide.h"
#include "win32/System.h"

#include <optional>

namespace zv::win32 {

/// Maps WM_KEYDOWN to a key that the dialogs know; empty for one that belongs to the window (shortcuts,
/// selecting with Shift, function keys) or that comes as a character.
std::optional<Key> keyOf(WPARAM code);

/// The same as a chord that a section may have a macro for.
std::optional<Chord> chordOf(WPARAM code);
/// The zoom that the key asks for.
std::optional<Magnification::Change> zoomOf(WPARAM code);

/// Joins the units of WM_CHAR to characters.
class Characters {
public:
    /// The character that is complete with that unit; empty for half of one, and for those that are commands.
    std::optional<String> take(wchar_t unit);

private:
    char16_t first_ = 0;
};

/// Whether the key is held down.
inline bool held(int code) { return GetKeyState(code) < 0; }

} // namespace zv::win32
