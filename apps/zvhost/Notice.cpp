#include "zvhost/Notice.h"

#include <algorithm>

namespace zv::host {

void Notice::tell(Message message)
{
    const bool first = waiting_.empty() || (!message.foretells && waiting_.front().foretells);
    if (!message.foretells)
        std::erase_if(waiting_, [](const Message& each) { return each.foretells; });
    waiting_.push_back(std::move(message));
    if (first)
        follow();
}

void Notice::next()
{
    if (!waiting_.empty())
        waiting_.erase(waiting_.begin());
    follow();
}

void Notice::forget()
{
    waiting_.clear();
    follow();
}

void Notice::forget(const std::vector<Long>& openings)
{
    forgetIf([&](const Message& each) {
        return std::ranges::find_first_of(each.openings, openings) != each.openings.end();
    });
}

void Notice::forget(Drafts which)
{
    forgetIf([&](const Message& each) {
        return !each.draft.empty() && (which == Drafts::all || !exists(each.draft));
    });
}

void Notice::review()
{
    forgetIf([](const Message& each) { return each.holds && !each.holds(); });
}

void Notice::forgetIf(const std::function<bool(const Message&)>& told)
{
    if (std::erase_if(waiting_, told) > 0)
        follow();
}

void Notice::follow()
{
    if (waiting_.empty())
        return bar_.hide();
    std::vector<Bar::Choice> choices = waiting_.front().choices;
    choices.push_back({QStringLiteral("Entendido"), Qt::Key_E, [this] { next(); }});
    bar_.say(waiting_.front().text, choices);
}

} // namespace zv::host
