#include "qt/GridView.h"

#include "qt/Columns.h"
#include "qt/QtText.h"
#include "views/ViewRules.h"

#include <QAbstractTableModel>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace zv {

namespace {

Qt::Alignment alignmentOf(Integer number)
{
    switch (number) {
    case 4:
        return Qt::AlignCenter;
    case 7:
        return Qt::AlignRight | Qt::AlignVCenter;
    default:
        return Qt::AlignLeft | Qt::AlignVCenter;
    }
}

} // namespace

/// Adapter: the grid as a table model without a copy; row 0 of the grid is the heading. Hidden columns are
/// left out: screen readers would read them out.
class GridView::Cells final : public QAbstractTableModel {
public:
    explicit Cells(const MSFlexGrid& grid) : grid_(grid) {}
    int rowCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : rows_; }
    int columnCount(const QModelIndex& parent) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(columns_.size());
    }
    QVariant data(const QModelIndex& index, int role) const override
    {
        return cell(index.row() + 1, index.column(), role);
    }
    /// Rows are headed, unseen, by their first cell.
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        return orientation == Qt::Horizontal ? cell(0, section, role) : cell(section + 1, 0, role);
    }
    /// The grid's column that is shown at that place; there is one at each.
    Long columnAt(int place) const { return columns_.at(static_cast<std::size_t>(place)); }
    /// Invalid for a hidden column.
    QModelIndex indexOf(Long row, Long column) const
    {
        const auto found = std::ranges::find(columns_, column);
        return found == columns_.end() ? QModelIndex()
                                       : index(row - 1, static_cast<int>(found - columns_.begin()));
    }
    QModelIndex lastIndexOf(Long row) const { return index(row - 1, columnCount({}) - 1); }
    void refresh()
    {
        std::vector<Long> columns;
        for (Long column = 0; column < grid_.Cols(); ++column)
            if (grid_.ColWidth(column) != 0)
                columns.push_back(column);
        if (rows_ != grid_.Rows() - 1 || columns_ != columns) {
            beginResetModel();
            rows_ = grid_.Rows() - 1;
            columns_ = std::move(columns);
            endResetModel();
        } else if (rows_ > 0 && !columns_.empty()) {
            Q_EMIT dataChanged(index(0, 0), lastIndexOf(rows_));
        }
        if (!columns_.empty())
            Q_EMIT headerDataChanged(Qt::Horizontal, 0, columnCount({}) - 1);
    }

private:
    QVariant cell(Long row, int place, int role) const
    {
        // Bounds check: the grid may have shrunk since the table last looked.
        const Long column =
            static_cast<std::size_t>(place) < columns_.size() ? columnAt(place) : grid_.Cols();
        if (row >= grid_.Rows() || column >= grid_.Cols())
            return {};
        if (role == Qt::DisplayRole)
            return toQt(grid_.TextMatrix(row, column));
        if (role == Qt::TextAlignmentRole)
            return {alignmentOf(grid_.ColAlignment(column)).toInt()};
        return {};
    }
    const MSFlexGrid& grid_;
    int rows_ = 0;
    std::vector<Long> columns_; ///< Those that are not hidden.
};

GridView::GridView(ViewSite& window, MSFlexGrid& grid, QWidget& parent)
    : ViewOf(window, grid, parent), cells_(std::make_unique<Cells>(grid))
{
    QTableView& table = widget();
    table.setModel(cells_.get());
    table.setTabKeyNavigation(false);
    table.setEditTriggers(QAbstractItemView::NoEditTriggers);
    table.setSelectionMode(QAbstractItemView::ContiguousSelection);
    table.setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    table.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    table.setWordWrap(false);
    table.setFrameStyle(QFrame::Box | QFrame::Plain);
    table.setLineWidth(0);
    table.verticalHeader()->hide();
    table.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table.verticalHeader()->setMinimumSectionSize(1);
    table.horizontalHeader()->setMinimumSectionSize(0);
    table.horizontalHeader()->setHighlightSections(false);
    watch();
    table.viewport()->installEventFilter(this);
    table.horizontalHeader()->viewport()->installEventFilter(this);
    connect(table.horizontalHeader(), &QHeaderView::sectionResized, this, [this] {
        if (dragging_ && !following_)
            dragged();
    });
    // By a screen reader: presses and keys are acts before the table sees them.
    connect(table.selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this](const QItemSelection& now) {
                if (!selecting_ && !now.isEmpty())
                    later([this, row = now.front().top() + 1, place = now.front().left()] {
                        choose(row, place);
                    });
            });
    connect(table.verticalScrollBar(), &QScrollBar::valueChanged, this, [this](int top) { scrolled(top); });
}

GridView::~GridView() = default;

void GridView::scrolled(int top)
{
    // Not an act: where rows went away the scroll bar moves by itself.
    const int wanted = std::min(control().TopRow() - 1, widget().verticalScrollBar()->maximum());
    if (window().alive() && !following_ && !window().busy() && top != wanted)
        act([&](Acts& acts) { return acts.scroll(control(), std::min(top + 1, control().Rows() - 1)); });
}

void GridView::followContent()
{
    const QScopedValueRollback following(following_, true);
    cells_->refresh();
    name(); // A grid on the pages of a strip has the name of the page.
    followSizes();
    followSelection();
    widget().verticalScrollBar()->setValue(control().TopRow() - 1);
}

void GridView::followSizes()
{
    QTableView& table = widget();
    const int height = window().pixels(control().rowHeight());
    table.verticalHeader()->setDefaultSectionSize(height);
    table.horizontalHeader()->setFixedHeight(height);
    int place = 0;
    for (const int width : widths())
        table.setColumnWidth(place++, width);
    window().columnsMoved();
}

int GridView::room() const
{
    const QTableView& table = widget();
    const int height = window().pixels(control().rowHeight());
    const bool scrolls = height * control().Rows() > table.height();
    return table.width() - (scrolls ? table.verticalScrollBar()->sizeHint().width() : 0);
}

std::vector<int> GridView::widths() const
{
    std::vector<int> all;
    for (int place = 0; place < cells_->columnCount({}); ++place)
        all.push_back(window().pixels(control().ColWidth(cells_->columnAt(place))));
    if (window().bare() || all.empty())
        return all;
    const int title = widget().horizontalHeader()->sectionSizeHint(static_cast<int>(all.size()) - 1);
    return columnWidths(
        std::move(all), shares_, room(), [this] { return columnNeeds(widget()); }, title);
}

void GridView::dragged()
{
    const int columns = cells_->columnCount({});
    shares_.clear();
    for (int place = 0; place < columns; ++place)
        shares_.push_back(static_cast<double>(widget().columnWidth(place)) / room());
    const QScopedValueRollback following(following_, true);
    followSizes();
}

std::optional<std::pair<int, int>> GridView::currentColumn() const
{
    const QModelIndex cell = cells_->indexOf(std::max<Long>(control().Row(), 1), control().Col());
    if (!cell.isValid())
        return std::nullopt;
    return std::pair(widget().columnViewportPosition(cell.column()), widget().columnWidth(cell.column()));
}

void GridView::followSelection()
{
    const QScopedValueRollback selecting(selecting_, true);
    const MSFlexGrid& grid = control();
    QItemSelectionModel& selection = *widget().selectionModel();
    if (grid.Row() < 1 || grid.Row() >= grid.Rows())
        return selection.clear();
    const QModelIndex current = cells_->indexOf(grid.Row(), grid.Col());
    QItemSelection selected(current, cells_->indexOf(std::max<Long>(grid.RowSel(), 1), grid.ColSel()));
    if (hasLines(grid)) {
        selected = {};
        for (Long row = 1; row < grid.Rows(); ++row)
            if (chosen_ == grid.RowData(row))
                selected.select(cells_->index(row - 1, 0), cells_->lastIndexOf(row));
    }
    selection.select(selected, QItemSelectionModel::ClearAndSelect);
    selection.setCurrentIndex(current, QItemSelectionModel::NoUpdate);
}

void GridView::noteChosen()
{
    const MSFlexGrid& grid = control();
    // A click on the heading chooses what no line has.
    chosen_ = grid.RowData(grid.Row());
    followSelection();
}

bool GridView::press(const Keystroke& key)
{
    ControlView::press(key);
    // In a grid the space bar clicks.
    if (window().alive() && key == Keystroke(String(u" ")))
        noteChosen();
    return true;
}

void GridView::clicked(const QObject& watched, const QPoint& where)
{
    const QTableView& table = widget();
    const bool heading = &watched != table.viewport();
    const int column = table.columnAt(where.x()); // Of those shown.
    const Long row = heading ? 0 : table.rowAt(where.y()) + 1;
    if (column < 0 || (!heading && row == 0))
        act([this](Acts& acts) { return acts.focus(control()); });
    else
        choose(row, column);
}

void GridView::choose(Long row, int place)
{
    // Bounds check: the grid may have shrunk since it was asked for.
    if (row < control().Rows() && place < cells_->columnCount({}) &&
        act([&](Acts& acts) { return acts.clickCell(control(), row, cells_->columnAt(place)); }) &&
        window().alive())
        noteChosen();
}

bool GridView::page(int key)
{
    if (key != Qt::Key_PageUp && key != Qt::Key_PageDown)
        return false;
    const Long rows = control().visibleRows();
    const Long top = control().TopRow() + (key == Qt::Key_PageDown ? rows : -rows);
    act([&](Acts& acts) { return acts.scroll(control(), std::clamp<Long>(top, 0, control().Rows() - 1)); });
    return true;
}

/// Whether the event belongs to the dragging of an edge between two titles, which the heading does itself.
bool GridView::drags(QEvent& event)
{
    const auto* mouse = dynamic_cast<const QMouseEvent*>(&event);
    if (window().bare() || mouse == nullptr)
        return false;
    const QHeaderView& heading = *widget().horizontalHeader();
    const int at = mouse->position().toPoint().x();
    const int grip = heading.style()->pixelMetric(QStyle::PM_HeaderGripMargin, nullptr, &heading);
    bool onEdge = false;
    for (int place = 0; place + 1 < heading.count(); ++place)
        onEdge = onEdge || std::abs(heading.sectionViewportPosition(place + 1) - at) <= grip;
    const bool was = dragging_;
    // A double click there makes the column as wide as its texts.
    if (event.type() == QEvent::MouseButtonPress || event.type() == QEvent::MouseButtonDblClick)
        dragging_ = onEdge && mouse->button() == Qt::LeftButton;
    else if (event.type() == QEvent::MouseButtonRelease)
        dragging_ = false;
    // Without a button it is the pointer that shows where one can drag.
    return dragging_ || was || (event.type() == QEvent::MouseMove && mouse->buttons() == Qt::NoButton);
}

bool GridView::handle(QObject& watched, QEvent& event)
{
    if (&watched == &widget())
        return event.type() == QEvent::KeyPress && page(dynamic_cast<QKeyEvent&>(event).key());
    if (&watched == widget().horizontalHeader()->viewport() && drags(event))
        return false;
    if (event.type() == QEvent::ToolTip && &watched == widget().viewport()) {
        tellCutCell(widget(), dynamic_cast<QHelpEvent&>(event));
        return true;
    }
    const bool left = event.type() >= QEvent::MouseButtonPress && event.type() <= QEvent::MouseMove &&
                      dynamic_cast<QMouseEvent&>(event).button() == Qt::LeftButton;
    switch (event.type()) {
    case QEvent::MouseButtonPress:
        flush();
        if (left)
            clicked(watched, dynamic_cast<QMouseEvent&>(event).position().toPoint());
        return true;
    case QEvent::MouseButtonDblClick:
        if (left)
            act([this](Acts& acts) { return acts.clickCellAgain(control()); });
        return true;
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
        return true; // Swallowed: the press has chosen the cell, and dragging selects nothing.
    default:
        return false;
    }
}

} // namespace zv
