#include "views/UnsavedPupils.h"

#include "forms/ComboBox.h"
#include "forms/Controls.h"
#include "forms/MSFlexGrid.h"
#include "forms/TabStrip.h"

#include <algorithm>

namespace zv {

namespace {

String shownBy(const Control& field)
{
    const auto* box = dynamic_cast<const TextBox*>(&field);
    return box != nullptr ? box->Text() : decimalText(dynamic_cast<const ComboBox&>(field).ListIndex());
}

int pageOf(const SectionControls& controls)
{
    return controls.strip == nullptr ? 0 : controls.strip->SelectedItem().Index();
}

} // namespace

void UnsavedPupils::changed(const Control& control, const PropertyBase* property)
{
    const ComboBox* floating = controls_.floating;
    if (&control == floating && (property == &floating->Visible || property == &floating->ListIndex))
        noteRating();
    // The choice changes before the dialog hears of it: the fields are still those of the pupil being left.
    else if (&control == controls_.pupils && property == &controls_.pupils->ListIndex) {
        if (!moving_)
            noteFields(false);
        moving_ = true;
        for (const Control* field : controls_.fields)
            if (const auto* list = dynamic_cast<const ComboBox*>(field))
                timesSet_[list] = list->timesSet();
    }
}

void UnsavedPupils::look()
{
    if (!controls_.isSection())
        return;
    const bool arrived = moving_;
    if (arrived) {
        pupil_ = controls_.pupil();
        noteHeld();
    }
    moving_ = false;
    noteFields(arrived);
    if (const Ratings page = onPage(); page.all > 0)
        pages_[{pupil_, pageOf(controls_)}] = page;
}

void UnsavedPupils::noteRating()
{
    if (!controls_.ratingOpen())
        return;
    const ComboBox& list = *controls_.floating;
    const String answer = decimalText(list.ItemData(list.ListIndex()));
    const Place place{controls_.pupil(), &list, pageOf(controls_), controls_.grid->Row()};
    shown_.try_emplace(place, Shown{answer, answer}).first->second.last = answer;
}

void UnsavedPupils::noteHeld()
{
    stale_.clear();
    for (const Control* field : controls_.fields)
        if (const auto* list = dynamic_cast<const ComboBox*>(field);
            list != nullptr && list->timesSet() == timesSet_[list])
            stale_.insert(list);
}

void UnsavedPupils::noteFields(bool arrived)
{
    if (pupil_ < 0)
        return;
    for (const Control* field : controls_.fields) {
        if (stale_.contains(field))
            continue;
        const Place place{pupil_, field, 0, 0};
        const String now = shownBy(*field);
        const auto known = shown_.find(place);
        // What a pupil shows when he comes back is what the dialog kept: another text is no person's doing.
        if (known != shown_.end() && (!arrived || known->second.last == now))
            known->second.last = now;
        else if (arrived)
            shown_[place] = {now, now};
    }
}

std::vector<int> UnsavedPupils::pupils() const
{
    std::set<int> found;
    for (const auto& [place, shown] : shown_)
        if (shown.first != shown.last)
            found.insert(std::get<0>(place));
    return {found.begin(), found.end()};
}

UnsavedPupils::Ratings UnsavedPupils::onPage() const
{
    const MSFlexGrid* grid = controls_.grid;
    Ratings ratings;
    if (controls_.floating == nullptr || !grid->Visible())
        return ratings;
    Long last = grid->Cols() - 1;
    while (last > 0 && grid->ColWidth(last) == 0)
        --last;
    for (Long row = 1; row < grid->Rows(); ++row) {
        const auto known = shown_.find({controls_.pupil(), controls_.floating, pageOf(controls_), row});
        const bool given = known != shown_.end()
                               ? known->second.last != u"0"
                               : grid->TextMatrix(row, last).find_first_not_of(u' ') != String::npos;
        ratings.given += given;
        ++ratings.all;
    }
    return ratings;
}

UnsavedPupils::Ratings UnsavedPupils::onAllPages() const
{
    Ratings sum;
    int pages = 0;
    for (const auto& [place, page] : pages_)
        if (place.first == controls_.pupil()) {
            sum.given += page.given;
            sum.all += page.all;
            ++pages;
        }
    return pages == controls_.gridPages ? sum : Ratings{};
}

} // namespace zv
