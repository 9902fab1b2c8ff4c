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

void KeyQueue::send(StringView keys)
{
    while (!keys.empty()) {
        const std::size_t close = keys.front() == u'{' ? keys.find(u'}') : StringView::npos;
        if (close != StringView::npos) {
            queue_.emplace_back(keyOf(keys.substr(1, close - 1)));
            keys.remove_prefix(close + 1);
            continue;
        }
        // A pair of surrogates is one key.
        const StringView character = cut(keys, 1).empty() ? keys.substr(0, 2) : keys.substr(0, 1);
        queue_.emplace_back(String(character));
        keys.remove_prefix(character.size());
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
