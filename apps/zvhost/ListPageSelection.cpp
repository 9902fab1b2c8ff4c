// What is selected in the list, kept by keys while rows come, change their order and go.
#include "zvhost/ListPage.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <unordered_set>

namespace zv::host {
namespace {

/// Selected rows that stay so when others are shown; all of a list stay so while it has no more and no fewer.
constexpr std::size_t mostKept = 5000;

} // namespace

void ListPage::keepSelection()
{
    kept_ = {.selected = selectedKeys(),
             .place = table_.currentIndex().row(),
             .column = table_.currentIndex().column(),
             .count = model_.rowCount()};
    if (kept_.place >= 0)
        kept_.current = model_.keyAt(kept_.place);
    const QItemSelection ranges = table_.selectionModel()->selection();
    kept_.words = model_.words();
    kept_.all = ranges.size() == 1 && ranges.front().height() == kept_.count &&
                kept_.count > static_cast<int>(mostKept);
    if (swap_ == Swap::whole && !partial_)
        kept_.list = model_.rows().sortedKeys();
}

void ListPage::settle()
{
    std::optional<Long> added;
    Expected expected;
    const bool anew = swap_ != Swap::none;
    {
        const QScopedValueRollback settling(settling_, true);
        // Where the person has scrolled to, the list stays.
        table_.setAutoScroll(false);
        if (anew) {
            expected = std::exchange(expected_, std::nullopt).value_or(Expected());
            added = settleAnew(expected);
        }
        restoreSelection(anew);
        table_.setAutoScroll(true);
    }
    kept_ = {};
    if (isWhole())
        partial_ = false;
    if (anew)
        table_.scrollTo(table_.currentIndex());
    if (table_.shares())
        table_.share();
    tellCount();
    tellDefinition();
    calls_.selected();
    if (awaited_ && awaited_ == added)
        search_.clear();
    if (added && expected.then)
        expected.then(*added);
}

std::optional<Long> ListPage::settleAnew(const Expected& expected)
{
    const bool compared = swap_ == Swap::whole && !partial_;
    partial_ = swap_ == Swap::part;
    swap_ = Swap::none;
    std::vector<Long> added;
    if (compared)
        std::ranges::set_difference(model_.rows().sortedKeys(), kept_.list, std::back_inserter(added));
    if (added.empty())
        return std::nullopt;
    const bool isSeen = expected.added == Added::shows || model_.rowOf(added.front()) >= 0;
    if (isSeen && !awaited_ && expected.selected == kept_.selected)
        awaited_ = added.front();
    return added.front();
}

void ListPage::restoreSelection(bool anew)
{
    const bool next = std::exchange(gone_, false) || anew;
    if (awaited_ && model_.rowOf(*awaited_) >= 0)
        select(*awaited_);
    else if (first_ && partial_)
        chooseFirst();
    else if (kept_.all && kept_.count == model_.rowCount() && kept_.words == model_.words()) {
        const int current = kept_.current ? model_.rowOf(*kept_.current) : 0;
        table_.selectionModel()->setCurrentIndex(model_.index(current, 0), QItemSelectionModel::NoUpdate);
        table_.selectAll();
    } else if (!selectKeys(kept_.selected) && next && model_.rowCount() != 0)
        table_.choose(std::clamp(kept_.place, 0, model_.rowCount() - 1));
    if (const QModelIndex current = table_.currentIndex(); current.isValid() && kept_.column > 0)
        table_.selectionModel()->setCurrentIndex(current.siblingAtColumn(kept_.column),
                                                 QItemSelectionModel::NoUpdate);
}

bool ListPage::selectKeys(const std::vector<Long>& keys)
{
    QItemSelection found;
    QModelIndex current;
    if (keys.size() == 1) {
        if (const int row = model_.rowOf(keys.front()); row >= 0)
            table_.choose(row);
        return table_.selectionModel()->hasSelection();
    }
    const std::unordered_set<Long> sought(keys.begin(), keys.end());
    const int last = model_.columnCount() - 1;
    for (int row = 0; !sought.empty() && row < model_.rowCount(); ++row)
        if (const Long key = model_.keyAt(row); sought.contains(key)) {
            found.select(model_.index(row, 0), model_.index(row, last));
            if (!current.isValid() || key == kept_.current)
                current = model_.index(row, 0);
        }
    table_.selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    table_.selectionModel()->select(found, QItemSelectionModel::ClearAndSelect);
    return !found.isEmpty();
}

void ListPage::chooseFirst()
{
    const QScopedValueRollback settling(settling_, true);
    if (model_.rowCount() != 0)
        table_.choose(0);
    first_ = true;
}

void ListPage::select(Long key)
{
    chosenByPerson();
    const int row = model_.rowOf(key);
    if (row >= 0) {
        table_.choose(row);
        table_.scrollTo(model_.index(row, 0));
    } else if (!isWhole())
        awaited_ = key;
}

std::vector<Long> ListPage::selectedKeys() const
{
    std::vector<int> places = selectedPlaces();
    if (places.size() > mostKept)
        places = {std::max(0, table_.currentIndex().row())};
    std::vector<Long> keys;
    std::ranges::transform(places, std::back_inserter(keys), [&](int place) { return model_.keyAt(place); });
    return keys;
}

std::vector<int> ListPage::selectedPlaces() const
{
    std::vector<int> places;
    for (const QItemSelectionRange& each : table_.selectionModel()->selection())
        for (int row = each.top(); row <= each.bottom(); ++row)
            places.push_back(row);
    std::ranges::sort(places);
    return places;
}

std::vector<NamedRow> ListPage::selection() const
{
    std::vector<NamedRow> found;
    for (const int each : selectedPlaces())
        found.push_back({model_.keyAt(each), nameAt(each)});
    return found;
}

std::optional<Long> ListPage::selected() const
{
    const QItemSelection ranges = table_.selectionModel()->selection();
    if (ranges.size() != 1 || ranges.front().height() != 1)
        return std::nullopt;
    return model_.keyAt(ranges.front().top());
}

} // namespace zv::host
