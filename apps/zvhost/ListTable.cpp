#include "zvhost/ListTable.h"

#include "qt/Columns.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QPainter>
#include <QScopedValueRollback>

#include <algorithm>
#include <utility>

namespace zv::host {

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

void ListTable::fit()
{
    const int room = viewport()->width();
    if (model() == nullptr || room <= 0)
        return;
    const QScopedValueRollback fitting(fitting_, true);
    int column = 0;
    for (const int width : columnsIn(*this, room))
        setColumnWidth(column++, width);
}

void ListTable::sayEmpty(const QString& why)
{
    if (std::exchange(empty_, why) != why)
        viewport()->update();
}

void ListTable::paintEvent(QPaintEvent* event)
{
    QTableView::paintEvent(event);
    if (empty_.isEmpty())
        return;
    const int edge = fontMetrics().height();
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect().adjusted(edge, edge, -edge, -edge),
                     Qt::AlignHCenter | Qt::TextWordWrap, empty_);
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
            tellCutCell(*this, help);
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
