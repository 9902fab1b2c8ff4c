#pragma once

#include "runtime/Value.h"

#include <deque>
#include <optional>
#include <variant>

namespace zv {

/// Characters that key events report for keys without one (`KeyAscii`).
namespace keyAscii {
inline constexpr Integer backspace = 8;
} // namespace keyAscii

/// Codes of keys that key events report (`KeyCode`). The arrows stand one after the other.
namespace keyCode {
inline constexpr Integer firstArrow = 37;
inline constexpr Integer lastArrow = 40;
inline constexpr Integer deleteKey = 46;
} // namespace keyCode

/// Keys without a character, and those that have a meaning of their own.
enum class Key { Enter, Escape, Tab, BackTab, Backspace, Delete, Left, Right, Up, Down, Home, End };

/// A key as a person presses it: one of the above, or a character (one or two 16-bit units).
using Keystroke = std::variant<Key, String>;

/// Takes the first character off a text, as a key; a pair of surrogates is one.
Keystroke takeKey(StringView& text);

/// Whether a keyboard gives that character to be written: those of control are commands to a window.
constexpr bool isWritten(char16_t unit) { return unit >= u' ' && unit != u'\x7f'; }

/// Queue of keys that a program sends, replayed after the key in hand.
class KeyQueue {
public:
    /// "{END}", "{HOME}", "{TAB}", "{ENTER}", "{ESC}", "{BS}", "{DEL}", "{LEFT}", "{RIGHT}", "{UP}",
    /// "{DOWN}", and characters. Fails with 5 for a name in braces that is none of these.
    void send(StringView keys);
    std::optional<Keystroke> next();
    void clear() { queue_.clear(); }

private:
    std::deque<Keystroke> queue_;
};

/// The process's one queue.
KeyQueue& sentKeys();

} // namespace zv
