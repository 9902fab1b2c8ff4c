#include "views/ViewBase.h"

#include "views/ViewRules.h"

#include <utility>

namespace zv {

void ViewBase::changed(const PropertyBase* property)
{
    if (places(control(), property))
        return followPlace();
    if (!inBulk())
        return followContent();
    if (!std::exchange(waiting_, true))
        later([this] { flush(); });
}

void ViewBase::flush()
{
    if (std::exchange(waiting_, false))
        followContent();
}

void ViewBase::followAll()
{
    waiting_ = false;
    followPlace();
    followFont();
    followContent();
}

void ViewBase::click()
{
    if (base_.mayClick(control()))
        act([this](Acts& acts) { return acts.click(control()); });
}

void ViewBase::pressKey(const Keystroke& key)
{
    const bool clicks = key == Keystroke(Key::Enter) || key == Keystroke(String(u" "));
    if (clicks && !base_.mayClick(control()))
        return;
    if (const Key* named = std::get_if<Key>(&key))
        act([&](Acts& acts) { return acts.key(control(), *named); });
    else
        act([&](Acts& acts) { return acts.type(control(), std::get<String>(key)); });
}

} // namespace zv
