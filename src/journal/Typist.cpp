#include "journal/Typist.h"

#include "forms/ComboBox.h"
#include "forms/Controls.h"
#include "forms/Form.h"
#include "forms/MSFlexGrid.h"
#include "forms/TabStrip.h"
#include "journal/Watch.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace zv::journal {

namespace {

/// Whether two values mean the same: an entry is known by its number, if it has one.
bool means(const Content& a, const Content& b)
{
    return a == b || (!a.none && !b.none && a.value.number != 0 && a.value.number == b.value.number &&
                      !a.value.text.empty());
}

/// A value that is only what another one left: nobody chose it.
bool isConsequence(const Place& place, const Content& content)
{
    return content.none || (place.input == Input::option && content.value.number == 0);
}

StringView trimmed(StringView text)
{
    const std::size_t start = text.find_first_not_of(u' ');
    return start == StringView::npos ? StringView()
                                     : text.substr(start, text.find_last_not_of(u' ') - start + 1);
}

/// Whether a cell shows that answer, with or without the number in front that the list gives it.
bool shows(StringView cell, const Entry& answer)
{
    const StringView text = trimmed(answer.text);
    const std::size_t blank = text.find(u' ');
    return trimmed(cell) == text ||
           (answer.number != 0 && blank != StringView::npos && trimmed(cell) == trimmed(text.substr(blank)));
}

Long lastShownColumn(const MSFlexGrid& grid)
{
    Long column = grid.Cols() - 1;
    while (column > 0 && grid.ColWidth(column) == 0)
        --column;
    return column;
}

std::optional<Long> subjectRow(const MSFlexGrid& grid, const Entry& subject)
{
    for (Long row = 1; row < grid.Rows(); ++row)
        if (rowOf(grid, row) == subject)
            return row;
    return std::nullopt;
}

} // namespace

Typist::Typist(Form& form, Person& person, Quiet& quiet, const Draft& draft, bool typing)
    : form_(form), person_(person), quiet_(quiet), draft_(draft), typing_(typing), controls_(form)
{
    noteStored();
}

void Typist::noteStored()
{
    const Long pupil = controls_.isSection() ? controls_.pupil() : 0;
    if (std::ranges::find(visited_, pupil) != visited_.end())
        return;
    visited_.push_back(pupil);
    for (const Control* control : form_.Controls)
        stored_[{pupil, control}] = contentOf(*control);
}

bool Typist::goToPupil(const Entry& pupil)
{
    if (!controls_.isSection())
        return false;
    const ComboBox& list = *controls_.pupils;
    const auto is = [&](Long index) { return index >= 0 && entryOf(list, index) == pupil; };
    if (is(list.ListIndex()))
        return true;
    Long index = 0;
    while (index < list.ListCount() && !is(index))
        ++index;
    if (index == list.ListCount() || !person_.choose(*controls_.pupils, index) || !is(list.ListIndex()))
        return false;
    noteStored();
    return true;
}

bool Typist::goToPage(int page)
{
    TabStrip* strip = controls_.strip;
    if (strip == nullptr || page < 1 || page > strip->tabCount())
        return false;
    return strip->SelectedItem().Index() == page || person_.clickTab(*strip, page);
}

void Typist::makeAccessible(const Control& control)
{
    const int pages = controls_.strip == nullptr ? 0 : static_cast<int>(controls_.strip->tabCount());
    for (int page = 1; page <= pages && !control.accessible(); ++page)
        goToPage(page);
}

Control* Typist::openRating(const Place& place)
{
    MSFlexGrid* grid = controls_.grid;
    if (controls_.floating == nullptr || !goToPage(place.page) || !grid->Visible())
        return nullptr;
    const auto row = subjectRow(*grid, place.question);
    if (!row)
        return nullptr;
    if (!typing_)
        return controls_.floating;
    const bool hidden = place.column < 0 || place.column >= grid->Cols() || grid->ColWidth(place.column) == 0;
    const Long column = hidden ? lastShownColumn(*grid) : place.column;
    const bool opened =
        person_.clickCell(*grid, *row, column) && controls_.ratingOpen() && grid->Row() == *row;
    return opened ? controls_.floating : nullptr;
}

Control* Typist::reach(const Place& place)
{
    // What belongs to no pupil, or to another dialog's field of that name, is none of what is shown here.
    if ((place.within != 0) != inner_ || (controls_.isSection() && !goToPupil(place.pupil)))
        return nullptr;
    if (place.input == Input::rating)
        return openRating(place);
    Control* control = form_.find(place.control, place.index);
    if (control != nullptr && typing_)
        makeAccessible(*control);
    return control;
}

/// Of a rating in a preview what its cell shows, since to open the list would change that.
Content Typist::contentAt(const Place& place, const Control& control) const
{
    if (place.input != Input::rating || typing_)
        return contentOf(control);
    const MSFlexGrid& grid = *controls_.grid;
    const Long row = subjectRow(grid, place.question).value_or(0);
    return {.value = {0, String(trimmed(grid.TextMatrix(row, lastShownColumn(grid))))}};
}

void Typist::follow(const std::vector<Step>& steps)
{
    for (const Step& step : steps)
        if (step.value)
            before_.try_emplace(draft_.first(step.value->place), step.value->before);
    for (const Step& step : steps)
        if (!form_.Visible())
            putAside(step, Fate::refused);
        else if (step.value)
            take(*step.value, step.again);
        else
            act(step);
}

void Typist::take(const Change& change, bool again)
{
    const Place& place = draft_.places[change.place];
    const auto [entry, fresh] = known_.try_emplace(draft_.first(change.place), Known{items.size()});
    Known& known = entry->second;
    if (fresh)
        items.push_back({.pupil = place.pupil.text,
                         .within = within_,
                         .label = place.label,
                         .before = readAs(place, change.before),
                         .change = change});
    Item& item = items[known.item];
    item.draft = readAs(place, change.after);
    item.change.after = change.after;
    if (known.lost)
        return;
    Control* control = reach(place);
    if (control == nullptr) {
        item.fate = Fate::noPlace;
        known.lost = true;
        return;
    }
    type(change, again, *control, known);
}

void Typist::type(const Change& change, bool again, Control& control, Known& known)
{
    const Place& place = draft_.places[change.place];
    Item& item = items[known.item];
    const Content now = contentAt(place, control);
    const bool fresh = !std::exchange(known.seen, true);
    const bool rating = place.input == Input::rating;
    const auto first = stored_.find({place.pupil.number, &control});
    const Content stored = rating || first == stored_.end() ? now : first->second;
    if (fresh)
        item.now = readAs(place, stored);
    const auto same = [&](const Content& a, const Content& b) {
        return rating && !typing_ ? shows(a.value.text, b.value) : means(a, b);
    };
    if (isConsequence(place, change.after))
        return;
    const bool isThere = same(now, change.after);
    if (isThere && item.fate != Fate::stored)
        item.fate = Fate::typed;
    if (isThere && !(again && typing_ && place.input == Input::list))
        return;
    const auto* option = dynamic_cast<const OptionButton*>(&control);
    if (fresh && !isThere && (!same(stored, change.before) || (option != nullptr && otherChosen(*option)))) {
        item.fate = Fate::clash;
        known.lost = true;
    } else if (!typing_) {
        item.fate = Fate::typed;
    } else {
        item.fate = enter(place, change.after, now, control);
    }
}

Fate Typist::enter(const Place& place, const Content& after, const Content& now, Control& control)
{
    const auto* list = dynamic_cast<const ComboBox*>(&control);
    if (list != nullptr && !indexOf(after.value, *list))
        return Fate::noPlace;
    if (set(control, after))
        return Fate::typed;
    if (place.input == Input::text)
        set(control, now); // Not a part of it.
    return Fate::refused;
}

/// Whether somebody chose another option of the group than the draft had found chosen.
bool Typist::otherChosen(const OptionButton& option) const
{
    const auto isStored = [&](const Control* each) {
        const auto* other = dynamic_cast<const OptionButton*>(each);
        const auto stored = stored_.find({controls_.isSection() ? controls_.pupil() : 0, each});
        return other != nullptr && other->frame() == option.frame() && stored != stored_.end() &&
               stored->second.value.number != 0;
    };
    const auto chosen = std::ranges::find_if(form_.Controls, isStored);
    return chosen != form_.Controls.end() && std::ranges::none_of(before_, [&](const auto& each) {
               const Place& place = draft_.places[each.first];
               return place.control == (*chosen)->Name() && place.index == (*chosen)->Index() &&
                      each.second.value.number != 0;
           });
}

bool Typist::set(Control& control, const Content& after)
{
    if (auto* box = dynamic_cast<TextBox*>(&control)) {
        const auto all = [&] { return person_.select(*box, 0, static_cast<Long>(box->Text().size())); };
        if (all())
            person_.paste(*box, after.value.text);
        if (box->Text() != after.value.text && all())
            person_.type(*box, after.value.text);
    } else if (auto* list = dynamic_cast<ComboBox*>(&control)) {
        if (const auto index = indexOf(after.value, *list))
            person_.choose(*list, *index);
    } else {
        person_.click(control);
    }
    return means(contentOf(control), after);
}

void Typist::settle()
{
    if (controls_.isSection())
        return;
    constexpr int rounds = 3;
    bool differs = true;
    for (int round = 0; differs && round < rounds; ++round) {
        differs = false;
        for (auto& [first, known] : known_) {
            Item& item = items[known.item];
            const Place& place = draft_.places[first];
            Control* control = known.lost || item.fate == Fate::noPlace ? nullptr : reach(place);
            if (control == nullptr || isConsequence(place, item.change.after) ||
                means(contentOf(*control), item.change.after))
                continue;
            differs = true;
            item.fate = set(*control, item.change.after) ? Fate::typed : Fate::refused;
        }
    }
}

void Typist::show(const View& view)
{
    if (form_.Visible() && (view.pupil.number == 0 || goToPupil(view.pupil)))
        goToPage(view.page);
}

void Typist::putAside(const Step& step, Fate fate)
{
    const auto add = [&](const Change& change, const String& within) {
        const Place& place = draft_.places[change.place];
        items.push_back({.pupil = place.pupil.text,
                         .within = within,
                         .label = place.label,
                         .before = readAs(place, change.before),
                         .draft = readAs(place, change.after),
                         .fate = fate,
                         .change = change});
    };
    if (step.value)
        add(*step.value, within_);
    if (step.closing && step.closing->leaves)
        return;
    for (const Step& each : step.inner)
        if (each.value)
            add(*each.value, row_);
}

void Typist::act(const Step& step)
{
    const Act& act = step.act;
    if (act.verb == ActVerb::clickCell || act.verb == ActVerb::doubleClickCell)
        row_ = act.entry.text;
    Control* control = form_.find(act.control, act.index);
    if (!typing_ || control == nullptr)
        return putAside(step, typing_ ? Fate::noPlace : Fate::typed);
    makeAccessible(*control);
    bool entered = !step.opens;
    const Quiet::Inner before = std::exchange(quiet_.inner, [&](Form& inner) {
        entered = true;
        inside(inner, step);
    });
    const bool done = perform(act, *control);
    quiet_.inner = before;
    if (!done || !entered)
        putAside(step, Fate::noPlace);
}

bool Typist::perform(const Act& act, Control& control)
{
    auto* grid = dynamic_cast<MSFlexGrid*>(&control);
    if (grid != nullptr && (act.verb == ActVerb::clickCell || act.verb == ActVerb::doubleClickCell)) {
        const auto row = indexOf(act.entry, *grid);
        astray_ = !row || act.second < 0 || act.second >= grid->Cols();
        if (astray_)
            return false;
        return act.verb == ActVerb::clickCell ? person_.clickCell(*grid, *row, act.second)
                                              : person_.doubleClickCell(*grid, *row, act.second);
    }
    const auto* button = dynamic_cast<const CommandButton*>(&control);
    const bool stores = button != nullptr && (button->Default() || button->Cancel());
    const bool formKey = act.key == Key::Escape || (act.key == Key::Enter && button == nullptr);
    if (stores || formKey || astray_)
        return false;
    astray_ = !standOn(act.entry);
    if (astray_)
        return false;
    switch (act.verb) {
    case ActVerb::click:
        return person_.click(control);
    case ActVerb::key:
        return act.key && person_.key(control, *act.key);
    case ActVerb::type:
        return person_.type(control, act.text);
    default:
        return false;
    }
}

/// Moves by keys, which choose nothing, to the row on which the person stood; false if it is not there.
bool Typist::standOn(const Entry& row)
{
    if (row == Entry() || controls_.grid == nullptr)
        return true;
    MSFlexGrid& grid = *controls_.grid;
    const auto wanted = indexOf(row, grid);
    if (wanted && *wanted != grid.Row())
        makeAccessible(grid);
    while (wanted && *wanted != grid.Row()) {
        const Long from = grid.Row();
        if (!person_.key(grid, from < *wanted ? Key::Down : Key::Up) || grid.Row() == from)
            return false;
    }
    return wanted.has_value();
}

void Typist::inside(Form& inner, const Step& step)
{
    if (!step.opens || (step.closing && step.closing->leaves)) {
        person_.close(inner);
        return;
    }
    Typist typist(inner, person_, quiet_, draft_, true);
    typist.inner_ = true;
    typist.within_ = inner.Caption();
    typist.follow(step.inner);
    typist.settle();
    if (step.closing)
        press(*step.closing, inner);
    else
        quiet_.handOver(inner);
    if (inner.Visible()) {
        person_.close(inner);
        for (Item& item : typist.items)
            item.fate = Fate::refused;
    }
    items.insert(items.end(), typist.items.begin(), typist.items.end());
}

/// The button of a dialog that changes its opener's list only.
void Typist::press(const Act& closing, Form& inner)
{
    Control* control = inner.find(closing.control, closing.index);
    if (control == nullptr)
        return;
    if (closing.verb == ActVerb::click)
        person_.click(*control);
    else if (closing.key)
        person_.key(*control, *closing.key);
    else if (closing.verb == ActVerb::type)
        person_.type(*control, closing.text);
}

} // namespace zv::journal
