#include "win32/Win32Keys.h"

#include <algorithm>
#include <utility>

namespace zv::win32 {

namespace {

constexpr std::pair<WPARAM, Key> alone[] = {
    {VK_DELETE, Key::Delete}, {VK_LEFT, Key::Left}, {VK_RIGHT, Key::Right}, {VK_UP, Key::Up},
    {VK_DOWN, Key::Down},     {VK_HOME, Key::Home}, {VK_END, Key::End},
};
/// Keys that mean the same with Shift.
constexpr std::pair<WPARAM, Key> shifted[] = {
    {VK_RETURN, Key::Enter},
    {VK_ESCAPE, Key::Escape},
    {VK_TAB, Key::Tab},
    {VK_BACK, Key::Backspace},
};

template <std::size_t N>
std::optional<Key> among(const std::pair<WPARAM, Key> (&keys)[N], WPARAM code)
{
    const auto* found = std::ranges::find(keys, code, &std::pair<WPARAM, Key>::first);
    return found == std::end(keys) ? std::nullopt : std::optional(found->second);
}

} // namespace

std::optional<Key> keyOf(WPARAM code)
{
    if (held(VK_CONTROL) || held(VK_MENU))
        return std::nullopt;
    const bool shift = held(VK_SHIFT);
    if (code == VK_TAB && shift)
        return Key::BackTab;
    if (const auto key = shift ? std::nullopt : among(alone, code))
        return key;
    return among(shifted, code);
}

std::optional<Chord> chordOf(WPARAM code)
{
    constexpr std::pair<WPARAM, Chord::Key> keys[] = {
        {VK_TAB, Chord::Key::tab},      {VK_PRIOR, Chord::Key::pageUp},  {VK_NEXT, Chord::Key::pageDown},
        {VK_RETURN, Chord::Key::enter}, {VK_DELETE, Chord::Key::remove}, {L'D', Chord::Key::d},
    };
    const auto* found = std::ranges::find(keys, code, &std::pair<WPARAM, Chord::Key>::first);
    if (found == std::end(keys))
        return std::nullopt;
    return Chord{
        .key = found->second, .control = held(VK_CONTROL), .shift = held(VK_SHIFT), .alt = held(VK_MENU)};
}

std::optional<Magnification::Change> zoomOf(WPARAM code)
{
    if (!held(VK_CONTROL) || held(VK_MENU))
        return std::nullopt;
    switch (code) {
    case VK_OEM_PLUS:
    case VK_ADD:
        return Magnification::Change::larger;
    case VK_OEM_MINUS:
    case VK_SUBTRACT:
        return Magnification::Change::smaller;
    case L'0':
    case VK_NUMPAD0:
        return Magnification::Change::usual;
    default:
        return std::nullopt;
    }
}

std::optional<String> Characters::take(wchar_t unit)
{
    const char16_t first = std::exchange(first_, u'\0');
    if (IS_HIGH_SURROGATE(unit)) {
        first_ = unit;
        return std::nullopt;
    }
    if (IS_LOW_SURROGATE(unit) && first != 0)
        return String{first, static_cast<char16_t>(unit)};
    if (!isWritten(static_cast<char16_t>(unit)))
        return std::nullopt;
    return String(1, static_cast<char16_t>(unit));
}

} // namespace zv::win32
