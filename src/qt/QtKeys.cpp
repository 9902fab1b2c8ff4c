#include "qt/QtKeys.h"

#include "qt/QtText.h"

#include <QKeyEvent>

#include <algorithm>
#include <utility>

namespace zv {

namespace {

constexpr std::pair<int, Key> alone[] = {
    {Qt::Key_Delete, Key::Delete}, {Qt::Key_Left, Key::Left}, {Qt::Key_Right, Key::Right},
    {Qt::Key_Up, Key::Up},         {Qt::Key_Down, Key::Down}, {Qt::Key_Home, Key::Home},
    {Qt::Key_End, Key::End},
};
/// Keys that mean the same with Shift.
constexpr std::pair<int, Key> shifted[] = {
    {Qt::Key_Return, Key::Enter}, {Qt::Key_Enter, Key::Enter},     {Qt::Key_Escape, Key::Escape},
    {Qt::Key_Tab, Key::Tab},      {Qt::Key_Backtab, Key::BackTab}, {Qt::Key_Backspace, Key::Backspace},
};

template <std::size_t N>
std::optional<Keystroke> named(const std::pair<int, Key> (&keys)[N], int code)
{
    const auto* found = std::ranges::find(keys, code, &std::pair<int, Key>::first);
    return found == std::end(keys) ? std::nullopt : std::optional<Keystroke>(found->second);
}

} // namespace

bool asksForHelp(const QKeyEvent& event)
{
    return event.key() == Qt::Key_F1 && event.modifiers() == Qt::NoModifier;
}

std::optional<Keystroke> keystrokeOf(const QKeyEvent& event)
{
    const Qt::KeyboardModifiers held = event.modifiers() & ~(Qt::KeypadModifier | Qt::GroupSwitchModifier);
    const bool shift = held == Qt::ShiftModifier;
    if (held == Qt::NoModifier)
        if (auto key = named(alone, event.key()))
            return key;
    if (shift && event.key() == Qt::Key_Tab)
        return Key::BackTab;
    if (held == Qt::NoModifier || shift)
        if (auto key = named(shifted, event.key()))
            return key;
    // AltGr: some keyboards report their third level as Control with Alt.
    const bool types = held == Qt::NoModifier || shift ||
                       (held & ~Qt::ShiftModifier) == (Qt::ControlModifier | Qt::AltModifier);
    const String text = fromQt(event.text());
    if (!types || text.empty() || !isWritten(text.front()))
        return std::nullopt;
    return text;
}

std::optional<Chord> chordOf(const QKeyEvent& event)
{
    constexpr std::pair<int, Chord::Key> keys[] = {
        {Qt::Key_Tab, Chord::Key::tab},       {Qt::Key_Backtab, Chord::Key::tab},
        {Qt::Key_PageUp, Chord::Key::pageUp}, {Qt::Key_PageDown, Chord::Key::pageDown},
        {Qt::Key_Return, Chord::Key::enter},  {Qt::Key_Enter, Chord::Key::enter},
        {Qt::Key_Delete, Chord::Key::remove}, {Qt::Key_D, Chord::Key::d},
    };
    const Qt::KeyboardModifiers held = event.modifiers() & ~Qt::KeypadModifier;
    const auto* found = std::ranges::find(keys, event.key(), &std::pair<int, Chord::Key>::first);
    constexpr Qt::KeyboardModifiers known = Qt::ControlModifier | Qt::ShiftModifier | Qt::AltModifier;
    if (found == std::end(keys) || (held & ~known) != Qt::NoModifier)
        return std::nullopt;
    return Chord{.key = found->second,
                 .control = held.testFlag(Qt::ControlModifier),
                 .shift = held.testFlag(Qt::ShiftModifier),
                 .alt = held.testFlag(Qt::AltModifier)};
}

} // namespace zv
