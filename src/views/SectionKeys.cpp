#include "views/SectionKeys.h"

#include "forms/ComboBox.h"
#include "forms/MSFlexGrid.h"
#include "forms/TabStrip.h"

#include <algorithm>

namespace zv {

namespace {

/// Number of an answer, as it stands in front of its text.
StringView numberPart(StringView entry) { return entry.substr(0, entry.find(u' ')); }

StringView textIn(StringView entry)
{
    const std::size_t blank = entry.find(u' ');
    return blank == StringView::npos ? StringView() : entry.substr(blank + 1);
}

bool startsWith(StringView text, StringView start)
{
    return text.size() >= start.size() && sameName(text.substr(0, start.size()), start);
}

StringView trimmed(StringView text)
{
    const std::size_t first = text.find_first_not_of(u' ');
    return first == StringView::npos ? StringView()
                                     : text.substr(first, text.find_last_not_of(u' ') - first + 1);
}

} // namespace

bool SectionKeys::inList() const
{
    return controls_.ratingOpen() && controls_.form.ActiveControl() == controls_.floating;
}

bool SectionKeys::atRating() const
{
    return inList() || (controls_.floating != nullptr && controls_.grid->Rows() > 1 &&
                        controls_.form.ActiveControl() == controls_.grid);
}

bool SectionKeys::goToPage(Acts& acts, Long step)
{
    if (controls_.strip == nullptr || controls_.strip->tabCount() == 0)
        return false;
    TabStrip& strip = *controls_.strip;
    const Long pages = strip.tabCount();
    const Long page = (strip.SelectedItem().Index() - 1 + step + pages) % pages + 1;
    if (acts.clickTab(strip, page) && acts.key(strip, Key::Tab) &&
        controls_.form.ActiveControl() == controls_.grid)
        toRatingCell(acts);
    return true;
}

bool SectionKeys::goToPupil(Acts& acts, Long step)
{
    if (!controls_.isSection())
        return false;
    const Long before = controls_.pupils->ListIndex();
    if (before + step < 0 || before + step >= controls_.pupils->ListCount())
        return true;
    Control* was = inList() ? controls_.grid : controls_.form.ActiveControl();
    TabStrip* strip = controls_.strip;
    const Long page = strip == nullptr ? 0 : strip->SelectedItem().Index();
    acts.click(step < 0 ? *controls_.previous : *controls_.next);
    if (controls_.pupils->ListIndex() == before)
        return true;
    if (strip != nullptr && strip->SelectedItem().Index() != page)
        acts.clickTab(*strip, page);
    if (was != nullptr && was->accessible())
        acts.focus(*was);
    if (was == controls_.grid && was != nullptr)
        toRatingCell(acts);
    return true;
}

void SectionKeys::toRatingCell(Acts& acts) const
{
    if (controls_.floating == nullptr || controls_.grid->Rows() < 2)
        return;
    // The last column; a grid that was filled anew has its current cell in the heading.
    acts.key(*controls_.grid, Key::End);
    if (controls_.grid->Row() < 1)
        acts.key(*controls_.grid, Key::Down);
}

bool SectionKeys::openList(Acts& acts)
{
    if (inList())
        return true;
    typed_.clear();
    toRatingCell(acts);
    acts.type(*controls_.grid, u" ");
    return inList();
}

bool SectionKeys::leaveList(Acts& acts, bool down)
{
    if (!inList())
        return false;
    typed_.clear();
    MSFlexGrid& grid = *controls_.grid;
    const Long row = grid.Row();
    if (!acts.focus(grid))
        return true;
    if (down)
        acts.key(grid, Key::Down);
    if (grid.Row() != row)
        return true;
    // The list leaves when the grid's cell does, and there is none below: out and in again.
    acts.key(grid, Key::Left);
    acts.key(grid, Key::Right);
    return true;
}

bool SectionKeys::choose(Acts& acts, Long entry)
{
    if (openList(acts) && acts.choose(*controls_.floating, entry))
        leaveList(acts, true);
    return true;
}

std::vector<Long> SectionKeys::matches(StringView typed) const
{
    std::vector<Long> found;
    const ComboBox& list = *controls_.floating;
    for (Long entry = 0; entry < list.ListCount(); ++entry) {
        const StringView text = list.List(entry);
        if (sameName(numberPart(text), typed))
            return {entry};
        if (startsWith(text, typed) || startsWith(textIn(text), typed))
            found.push_back(entry);
    }
    return found;
}

bool SectionKeys::rate(Acts& acts, StringView typed)
{
    if (!atRating())
        return false;
    String sought = inList() ? typed_ + String(typed) : String(typed);
    // The space bar opens the list, and chooses the blank entry in it; within a text it is a letter.
    if (sought == u" ") {
        if (inList())
            return false;
        openList(acts);
        return true;
    }
    std::vector<Long> found = matches(sought);
    if (found.empty())
        found = matches(sought = String(typed));
    if (found.empty())
        return true;
    if (found.size() == 1)
        return choose(acts, found.front());
    // The same letter again: the answer after the one that it chose.
    const auto now = inList() ? std::ranges::find(found, controls_.floating->ListIndex()) : found.end();
    const bool again = now != found.end() && now + 1 != found.end() && sought == String(typed);
    if (openList(acts) && acts.choose(*controls_.floating, again ? *(now + 1) : found.front()))
        typed_ = sought;
    return true;
}

bool SectionKeys::clear(Acts& acts)
{
    if (!atRating())
        return false;
    const Long nothing = controls_.floating->find(0);
    return nothing < 0 || choose(acts, nothing);
}

bool SectionKeys::repeatAbove(Acts& acts)
{
    if (!atRating())
        return false;
    const MSFlexGrid& grid = *controls_.grid;
    const ComboBox& list = *controls_.floating;
    if (grid.Row() < 2)
        return true;
    Long column = grid.Cols() - 1;
    while (column > 0 && grid.ColWidth(column) == 0)
        --column;
    // What was chosen reads with its number, what was read from the database without.
    const StringView above = trimmed(grid.TextMatrix(grid.Row() - 1, column));
    std::vector<Long> found;
    for (Long entry = 0; entry < list.ListCount(); ++entry)
        if (trimmed(list.List(entry)) == above || trimmed(textIn(list.List(entry))) == above)
            found.push_back(entry);
    return found.size() != 1 || choose(acts, found.front());
}

} // namespace zv
