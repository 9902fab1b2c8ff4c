#include "journal/Item.h"

#include <map>

namespace zv::journal {

namespace {

/// The row of a dialog's own list by its first text, as the dialog within names it.
String rowOf(const Draft& draft, const Step& step)
{
    for (const Step& each : step.inner)
        if (each.value && draft.places[each.value->place].input == Input::text)
            return readAs(draft.places[each.value->place], each.value->after);
    return {};
}

void add(const Draft& draft, const std::vector<Step>& steps, const String& within, std::vector<Item>& items)
{
    std::map<std::size_t, std::size_t> known;
    for (const Step& step : steps) {
        if (!step.value) {
            if (!step.closing || !step.closing->leaves)
                add(draft, step.inner, rowOf(draft, step), items);
            continue;
        }
        const Place& place = draft.places[step.value->place];
        const auto [item, fresh] = known.try_emplace(draft.first(step.value->place), items.size());
        if (fresh)
            items.push_back({.pupil = place.pupil.text,
                             .within = within,
                             .label = place.label,
                             .before = readAs(place, step.value->before),
                             .fate = Fate::typed,
                             .change = *step.value});
        items[item->second].draft = readAs(place, step.value->after);
        items[item->second].change.after = step.value->after;
    }
    std::erase_if(items, [](const Item& each) { return each.change.before == each.change.after; });
}

} // namespace

std::vector<Item> itemsOf(const Draft& draft)
{
    std::vector<Item> items;
    add(draft, draft.steps, {}, items);
    return items;
}

} // namespace zv::journal
