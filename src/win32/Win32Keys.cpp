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
