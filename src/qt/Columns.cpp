#include "qt/Columns.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QToolTip>

#include <algorithm>
#include <numeric>

namespace zv {

namespace {

/// Rows that are measured: long lists open as fast as short ones.
constexpr int measured = 200;
constexpr int someLetters = 12;

/// Takes from the widest of those that are wider than they have to be, until all fit.
void giveWay(std::vector<int>& widths, const std::vector<int>& least, int room)
{
    int total = std::accumulate(widths.begin(), widths.end(), 0);
    while (total > room) {
        std::size_t widest = widths.size();
        for (std::size_t i = 0; i < widths.size(); ++i)
            if (widths[i] > least[i] && (widest == widths.size() || widths[i] > widths[widest]))
                widest = i;
        if (widest == widths.size())
            return;
        const int gives =
            std::min({total - room, std::max(1, widths[widest] / 16), widths[widest] - least[widest]});
        widths[widest] -= gives;
        total -= gives;
    }
}

} // namespace

std::vector<int> columnNeeds(const QTableView& table)
{
    const QAbstractItemModel& cells = *table.model();
    const int margin = table.fontMetrics().averageCharWidth() * 3;
    const int rows = std::min(cells.rowCount(), measured);
    std::vector<int> needs;
    for (int column = 0; column < cells.columnCount(); ++column) {
        int widest = table.horizontalHeader()->sectionSizeHint(column);
        for (int row = 0; row < rows; ++row)
            widest = std::max(widest, table.sizeHintForIndex(cells.index(row, column)).width() + margin);
        needs.push_back(widest);
    }
    return needs;
}

std::vector<int> columnsIn(const QTableView& table, int room)
{
    std::vector<int> widths = columnNeeds(table);
    if (widths.empty())
        return widths;
    std::vector<int> least;
    for (std::size_t i = 0; i < widths.size(); ++i)
        least.push_back(std::max(table.horizontalHeader()->sectionSizeHint(static_cast<int>(i)),
                                 std::min(widths[i], table.fontMetrics().averageCharWidth() * someLetters)));
    giveWay(widths, least, room);
    const int total = std::accumulate(widths.begin(), widths.end(), 0);
    if (total >= room)
        return widths;
    for (int& each : widths)
        each = each * room / std::max(1, total);
    widths.back() += room - std::accumulate(widths.begin(), widths.end(), 0);
    return widths;
}

void tellCutCell(QTableView& table, const QHelpEvent& event)
{
    const QModelIndex at = table.indexAt(event.pos());
    const bool cut = at.isValid() && table.sizeHintForIndex(at).width() > table.columnWidth(at.column());
    QToolTip::showText(event.globalPos(), cut ? at.data().toString() : QString(), table.viewport());
}

} // namespace zv
