#include "zvhost/ListTable.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QScopedValueRollback>
#include <QToolTip>

#include <algorithm>
#include <numeric>

namespace zv::host {
namespace {

/// Rows that are measured for the columns' widths: long lists open as fast as short ones.
constexpr int measured = 200;

} // namespace

ListTable::ListTable(QWidget* parent) : QTableView(parent)
{
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setAlternatingRowColors(true);
    setShowGrid(false);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    horizontalHeader()->setMinimumSectionSize(fontMetrics().averageCharWidth() * 4);
    connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this] {
        if (!fitting_)
            shares_ = false;
    });
}

void ListTable::choose(int row)
{
    selectionModel()->setCurrentIndex(model()->index(row, 0),
                                      QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void ListTable::share()
{
    shares_ = true;
    fit();
}

void ListTable::setWidths(const QList<int>& widths)
{
    shares_ = false;
    const QScopedValueRollback fitting(fitting_, true);
    for (int column = 0; column < std::min<qsizetype>(widths.size(), horizontalHeader()->count()); ++column)
        setColumnWidth(column, widths[column]);
}

QList<int> ListTable::widths() const
{
    QList<int> all;
    for (int column = 0; column < horizontalHeader()->count(); ++column)
        all += columnWidth(column);
    return all;
}

/// Each column gets what it holds and its title need. What is left over is shared out in proportion; where it
/// is too little, the widest columns give way until all fit; titles stay whole.
void ListTable::fit()
{
    const int columns = horizontalHeader()->count();
    const int room = viewport()->width();
    if (columns == 0 || room <= 0)
        return;
    const int margin = fontMetrics().averageCharWidth() * 3;
    const int rows = std::min(model()->rowCount(), measured);
    std::vector<int> needs;
    std::vector<int> titles;
    for (int column = 0; column < columns; ++column) {
        titles.push_back(horizontalHeader()->sectionSizeHint(column));
        int widest = titles.back();
        for (int row = 0; row < rows; ++row)
            widest = std::max(widest, sizeHintForIndex(model()->index(row, column)).width() + margin);
        needs.push_back(widest);
    }
    int total = std::accumulate(needs.begin(), needs.end(), 0);
    while (total > room) {
        // The widest of those that are wider than their titles gives way.
        std::size_t widest = needs.size();
        for (std::size_t i = 0; i < needs.size(); ++i)
            if (needs[i] > titles[i] && (widest == needs.size() || needs[i] > needs[widest]))
                widest = i;
        if (widest == needs.size())
            break;
        const int gives =
            std::min({total - room, std::max(1, needs[widest] / 16), needs[widest] - titles[widest]});
        needs[widest] -= gives;
        total -= gives;
    }
    const QScopedValueRollback fitting(fitting_, true);
    int given = 0;
    for (int column = 0; column < columns; ++column) {
        const auto need = needs[static_cast<std::size_t>(column)];
        int width = total < room ? need * room / std::max(1, total) : need;
        if (total < room && column + 1 == columns)
            width = room - given;
        setColumnWidth(column, width);
        given += width;
    }
}

QModelIndex ListTable::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    if ((action != MoveHome && action != MoveEnd) || model() == nullptr || model()->rowCount() == 0)
        return QTableView::moveCursor(action, modifiers);
    return model()->index(action == MoveHome ? 0 : model()->rowCount() - 1,
                          std::max(0, currentIndex().column()));
}

bool ListTable::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto& help = dynamic_cast<QHelpEvent&>(*event);
        const QModelIndex at = indexAt(help.pos());
        if (at.isValid() && at.data(Qt::ToolTipRole).isNull()) {
            const bool cut = sizeHintForIndex(at).width() > columnWidth(at.column());
            QToolTip::showText(help.globalPos(), cut ? at.data().toString() : QString(), viewport());
            return true;
        }
    }
    return QTableView::viewportEvent(event);
}

void ListTable::resizeEvent(QResizeEvent* event)
{
    QTableView::resizeEvent(event);
    if (shares_)
        fit();
}

} // namespace zv::host
