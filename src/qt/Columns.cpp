#include "qt/Columns.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QToolTip>

#include <algorithm>

namespace zv {

namespace {

constexpr int someLetters = 12;

} // namespace

std::vector<ColumnNeed> columnNeeds(const QTableView& table)
{
    const QAbstractItemModel& cells = *table.model();
    const int letter = table.fontMetrics().averageCharWidth();
    const int margin = letter * 3;
    const int rows = std::min(cells.rowCount(), measuredRows);
    std::vector<ColumnNeed> needs;
    for (int column = 0; column < cells.columnCount(); ++column) {
        const int title = table.horizontalHeader()->sectionSizeHint(column);
        int widest = title;
        for (int row = 0; row < rows; ++row)
            widest = std::max(widest, table.sizeHintForIndex(cells.index(row, column)).width() + margin);
        needs.push_back({widest, title, letter * someLetters});
    }
    return needs;
}

void tellCutCell(QTableView& table, const QHelpEvent& event)
{
    const QModelIndex at = table.indexAt(event.pos());
    const bool cut = at.isValid() && table.sizeHintForIndex(at).width() > table.columnWidth(at.column());
    QToolTip::showText(event.globalPos(), cut ? at.data().toString() : QString(), table.viewport());
}

} // namespace zv
