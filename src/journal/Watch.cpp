#include "journal/Watch.h"

#include "forms/ComboBox.h"
#include "forms/Controls.h"
#include "forms/Form.h"
#include "forms/MSFlexGrid.h"
#include "forms/TabStrip.h"
#include "runtime/Time.h"

#include <algorithm>
#include <functional>

namespace zv::journal {

namespace {

/// Inverse of the helper object's escaping.
String typed(const TextBox& box)
{
    const String& text = box.Text();
    return !text.empty() && box.TextoDoblado() == text ? Replace(text, u"''", u"'") : text;
}

Input inputOf(const Control& control)
{
    if (dynamic_cast<const TextBox*>(&control) != nullptr)
        return Input::text;
    if (dynamic_cast<const ComboBox*>(&control) != nullptr)
        return Input::list;
    return dynamic_cast<const OptionButton*>(&control) != nullptr ? Input::option : Input::tick;
}

bool isInput(const Control& control)
{
    return dynamic_cast<const TextBox*>(&control) != nullptr ||
           dynamic_cast<const ComboBox*>(&control) != nullptr ||
           dynamic_cast<const OptionButton*>(&control) != nullptr ||
           dynamic_cast<const CheckBox*>(&control) != nullptr;
}

String labelOf(const Control& control)
{
    if (const auto* option = dynamic_cast<const OptionButton*>(&control))
        return option->Caption();
    if (const auto* tick = dynamic_cast<const CheckBox*>(&control))
        return tick->Caption();
    const auto* label = dynamic_cast<const Label*>(control.label());
    String text = label != nullptr ? label->Caption() : control.fullName();
    while (text.ends_with(u':') || text.ends_with(u' '))
        text.pop_back();
    return text;
}

Content entryIn(const ComboBox& list)
{
    if (list.ListIndex() < 0)
        return {.none = true};
    return {.value = entryOf(list, list.ListIndex())};
}

std::optional<Long> indexOf(const Entry& wanted, Long count, const std::function<Entry(Long)>& at)
{
    std::vector<Long> alike;
    for (Long index = 0; index < count; ++index) {
        const Entry each = at(index);
        if (each == wanted)
            return index;
        if (each.text == wanted.text)
            alike.push_back(index);
    }
    return alike.size() == 1 && !wanted.text.empty() ? std::optional(alike.front()) : std::nullopt;
}

} // namespace

std::optional<Long> indexOf(const Entry& wanted, const ComboBox& list)
{
    return indexOf(wanted, list.ListCount(), [&](Long index) { return entryOf(list, index); });
}

std::optional<Long> indexOf(const Entry& wanted, const MSFlexGrid& grid)
{
    return indexOf(wanted, grid.Rows(), [&](Long row) { return rowOf(grid, row); });
}

Entry entryOf(const ComboBox& list, Long index) { return {list.ItemData(index), list.List(index)}; }

Entry rowOf(const MSFlexGrid& grid, Long row)
{
    const Long last = grid.Cols() - 1;
    if (grid.ColWidth(last) == 0)
        return {numberIn(grid.TextMatrix(row, last)).value_or(0), grid.TextMatrix(row, 0)};
    return {grid.RowData(row), grid.TextMatrix(row, 0) + (last > 0 ? u" " + grid.TextMatrix(row, 1) : u"")};
}

Content contentOf(const Control& control)
{
    if (const auto* box = dynamic_cast<const TextBox*>(&control))
        return {.value = {0, typed(*box)}};
    if (const auto* list = dynamic_cast<const ComboBox*>(&control))
        return entryIn(*list);
    if (const auto* option = dynamic_cast<const OptionButton*>(&control))
        return {.value = {option->Value() ? 1 : 0, {}}};
    if (const auto* tick = dynamic_cast<const CheckBox*>(&control))
        return {.value = {tick->Value(), {}}};
    return {.none = true};
}

Watch::Watch(Form& form) : form_(form), controls_(form)
{
    for (Control* control : form.Controls)
        if (isInput(*control) && control != controls_.pupils && control != controls_.floating)
            inputs_.push_back({control, inputOf(*control), contentOf(*control)});
    view_ = view();
    noteSubjects();
}

View Watch::view() const
{
    View now;
    if (controls_.isSection() && controls_.pupils->ListIndex() >= 0)
        now.pupil = entryOf(*controls_.pupils, controls_.pupils->ListIndex());
    if (controls_.strip != nullptr)
        now.page = controls_.strip->SelectedItem().Index();
    return now;
}

void Watch::noteSubjects()
{
    subjects_.clear();
    if (controls_.floating != nullptr && controls_.grid->Visible())
        for (Long row = 0; row < controls_.grid->Rows(); ++row)
            subjects_.push_back(rowOf(*controls_.grid, row));
}

Place Watch::placeOf(const Watched& watched) const
{
    return {.input = watched.input,
            .control = watched.control->Name(),
            .index = watched.control->Index(),
            .pupil = view_.pupil,
            .page = view_.page,
            .label = labelOf(*watched.control)};
}

/// Comparison without a copy, as it is made for every input after every key.
bool Watch::holdsStill(const Watched& watched)
{
    const Content& content = watched.content;
    switch (watched.input) {
    case Input::text: {
        const auto& box = dynamic_cast<const TextBox&>(*watched.control);
        return box.TextoDoblado().empty() ? box.Text() == content.value.text
                                          : typed(box) == content.value.text;
    }
    case Input::list: {
        const auto& list = dynamic_cast<const ComboBox&>(*watched.control);
        const Long index = list.ListIndex();
        return index < 0 ? content.none
                         : !content.none && list.ItemData(index) == content.value.number &&
                               list.List(index) == content.value.text;
    }
    default:
        return contentOf(*watched.control) == content;
    }
}

std::optional<Watch::Difference> Watch::choice(const Control* control) const
{
    const auto found = std::ranges::find(inputs_, control, &Watched::control);
    if (controls_.isSection() || found == inputs_.end() || found->input == Input::text)
        return std::nullopt;
    return Difference{placeOf(*found), found->content, found->content};
}

std::vector<Watch::Difference> Watch::differences(const Control* first)
{
    std::vector<Difference> found;
    const View now = view();
    // Another pupil: the fields are his now, as the dialog holds them.
    const bool moved = now.pupil != view_.pupil;
    for (Watched& input : inputs_) {
        if (holdsStill(input))
            continue;
        Content content = contentOf(*input.control);
        if (!moved)
            found.push_back({placeOf(input), std::move(input.content), content});
        input.content = std::move(content);
        if (!moved && input.control == first)
            std::rotate(found.begin(), found.end() - 1, found.end());
    }
    const bool refilled = now != view_;
    view_ = now;
    if (refilled)
        noteSubjects();
    addRating(found);
    return found;
}

void Watch::addRating(std::vector<Difference>& found)
{
    const bool open =
        controls_.ratingOpen() && static_cast<std::size_t>(controls_.grid->Row()) < subjects_.size();
    if (!open) {
        ratingOpen_ = false;
        return;
    }
    const MSFlexGrid& grid = *controls_.grid;
    Place place{.input = Input::rating,
                .control = controls_.floating->Name(),
                .index = controls_.floating->Index(),
                .pupil = view_.pupil,
                .page = view_.page,
                .question = subjects_[static_cast<std::size_t>(grid.Row())],
                .column = grid.Col()};
    place.label = place.question.text;
    Content content = entryIn(*controls_.floating);
    const bool same = ratingOpen_ && rating_.same(place) && rating_.column == place.column;
    if (same && content == ratingContent_)
        return;
    found.push_back({place, same ? ratingContent_ : content, content});
    rating_ = std::move(place);
    ratingContent_ = std::move(content);
    ratingOpen_ = true;
}

} // namespace zv::journal
