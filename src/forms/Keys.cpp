#include "forms/Keys.h"

#include "forms/Desktop.h"
#include "runtime/Single.h"

#include <utility>

namespace zv {

namespace {

constexpr std::pair<StringView, Key> names[] = {
    {u"ENTER", Key::Enter}, {u"ESC", Key::Escape}, {u"TAB", Key::Tab},     {u"BS", Key::Backspace},
    {u"DEL", Key::Delete},  {u"LEFT", Key::Left},  {u"RIGHT", Key::Right}, {u"UP", Key::Up},
    {u"DOWN", Key::Down},   {u"HOME", Key::Home},  {u"END", Key::End},
};

Key keyOf(StringView name)
{
    for (const auto& [known, key] : names)
        if (sameName(known, name))
            return key;
    fail(failure::invalidCall, name);
}

} // namespace

Keystroke takeKey(StringView& text)
{
    const String character(text.substr(0, cut(text, 1).empty() ? 2 : 1));
    text.remove_prefix(character.size());
    return character;
}

void KeyQueue::send(StringView keys)
{
    while (!keys.empty()) {
        const std::size_t close = keys.front() == u'{' ? keys.find(u'}') : StringView::npos;
        if (close != StringView::npos) {
            queue_.emplace_back(keyOf(keys.substr(1, close - 1)));
            keys.remove_prefix(close + 1);
            continue;
        }
        queue_.push_back(takeKey(keys));
    }
}

std::optional<Keystroke> KeyQueue::next()
{
    if (queue_.empty())
        return std::nullopt;
    Keystroke first = std::move(queue_.front());
    queue_.pop_front();
    return first;
}

KeyQueue& sentKeys() { return single<KeyQueue>(); }

void SendKeys(StringView keys) { sentKeys().send(keys); }

} // namespace zv
