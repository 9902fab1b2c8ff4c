#include "journal/Draft.h"

#include <algorithm>
#include <set>
#include <utility>

namespace zv::journal {

namespace {

bool isOpen(const std::vector<Step>& steps) { return !steps.empty() && steps.back().stillOpen; }

} // namespace

bool Draft::add(const Record& record)
{
    if (const auto* opened = std::get_if<Opening>(&record))
        opening = *opened;
    else if (const auto* place = std::get_if<Place>(&record)) {
        const auto same = std::ranges::find_if(places, [&](const Place& each) { return each.same(*place); });
        first_.push_back(static_cast<std::size_t>(same - places.begin()));
        places.push_back(*place);
    } else if (const auto* pressed = std::get_if<Begun>(&record))
        begun = pressed->act;
    else if (std::holds_alternative<Inner>(record)) {
        Step step;
        step.act = begun.value_or(Act());
        step.opens = step.stillOpen = true;
        steps.push_back(std::move(step));
        innerLatest_.clear();
    } else {
        const Act& act = std::get<Act>(record);
        if (std::ranges::any_of(act.changes, [&](const Change& each) { return each.place >= places.size(); }))
            return false;
        add(act);
    }
    return true;
}

void Draft::add(const Act& act)
{
    acts.push_back(act);
    moment = act.moment;
    if (act.view)
        view = *act.view;
    if (!act.inner)
        begun.reset();
    if (act.inner && isOpen(steps)) {
        Step& step = steps.back();
        for (const Change& change : act.changes)
            add(change, step.inner, innerLatest_);
        if (act.closes)
            step.closing = act;
        return;
    }
    const bool opened = isOpen(steps);
    const bool chosen = act.ordered && !act.changes.empty() &&
                        places[act.changes.front().place].control == act.control &&
                        places[act.changes.front().place].index == act.index;
    if (chosen && !opened) {
        latest_.clear();
        for (const Change& change : act.changes)
            add(change, steps, latest_);
        steps[latest_.at(first(act.changes.front().place))].again = true;
        latest_.erase(first(act.changes.front().place));
        return;
    }
    if (opened || act.ordered) {
        if (!opened)
            steps.emplace_back();
        steps.back().act = act;
        steps.back().stillOpen = false;
        latest_.clear();
    }
    for (const Change& change : act.changes)
        add(change, steps, latest_);
}

void Draft::add(const Change& change, std::vector<Step>& to, Latest& latest) const
{
    Change merged = change;
    const std::size_t place = first(change.place);
    if (const auto known = latest.find(place); known != latest.end()) {
        const std::size_t old = known->second;
        if (old + 1 == to.size()) { // Letter after letter.
            to[old].value->after = change.after;
            return;
        }
        merged.before = to[old].value->before;
        to.erase(to.begin() + static_cast<std::ptrdiff_t>(old));
        for (auto& [other, step] : latest)
            step -= step > old ? 1 : 0;
    }
    Step step;
    step.value = std::move(merged);
    latest[place] = to.size();
    to.push_back(std::move(step));
}

std::map<std::size_t, Change> Draft::net() const
{
    std::map<std::size_t, Change> result;
    for (const Step& step : steps)
        if (step.value)
            result.try_emplace(first(step.value->place), *step.value).first->second.after = step.value->after;
    std::erase_if(result, [&](const auto& entry) {
        const auto& [place, change] = entry;
        const bool cleared =
            change.after.none || (places[place].input == Input::option && change.after.value.number == 0);
        return cleared || change.before == change.after;
    });
    return result;
}

std::size_t Draft::pupils() const
{
    std::set<Long> found;
    for (const auto& [place, change] : net())
        if (places[place].pupil.number != 0)
            found.insert(places[place].pupil.number);
    return found.size();
}

std::size_t Draft::count(bool texts) const
{
    const auto all = net();
    return static_cast<std::size_t>(std::ranges::count_if(
        all, [&](const auto& entry) { return (places[entry.first].input == Input::text) == texts; }));
}

std::size_t Draft::rows() const
{
    return static_cast<std::size_t>(std::ranges::count_if(steps, [](const Step& step) {
        if (step.opens)
            return !step.closing || !step.closing->leaves;
        return !step.value && step.act.verb == ActVerb::click;
    }));
}

} // namespace zv::journal
