#include "forms/MSFlexGrid.h"

#include "runtime/Members.h"

namespace zv {

namespace {

constexpr Long defaultColumnWidth = 960;
constexpr Long defaultRowHeight = 240;

} // namespace

MSFlexGrid::MSFlexGrid(Container& container, StringView name, int index)
    : Control(container, u"MSFlexGrid", name, index)
{
    resize(2, 2);
}
MSFlexGrid::~MSFlexGrid() = default;

Long MSFlexGrid::checkedRow(Long row) const
{
    if (row < 0 || row >= static_cast<Long>(content_.rows.size()))
        fail(failure::listIndexOutside, decimalText(row));
    return row;
}

Long MSFlexGrid::checkedColumn(Long column) const
{
    if (column < 0 || column >= static_cast<Long>(content_.widths.size()))
        fail(failure::listIndexOutside, decimalText(column));
    return column;
}

void MSFlexGrid::resize(Long rows, Long columns)
{
    if (rows < 1 || columns < 1)
        fail(failure::invalidProperty);
    const auto width = static_cast<std::size_t>(columns);
    keepInside(rows, columns);
    const std::size_t before = width == content_.widths.size() ? content_.rows.size() : 0;
    content_.rows.resize(static_cast<std::size_t>(rows));
    for (std::size_t row = before; row < content_.rows.size(); ++row)
        content_.rows[row].cells.resize(width);
    content_.widths.resize(width, defaultColumnWidth);
    content_.alignments.resize(width, 1);
    Rows.store(rows);
    Cols.store(columns);
    contentChanged();
}

void MSFlexGrid::keepInside(Long rows, Long columns)
{
    const auto within = [](Property<Long>& place, Long count) {
        place.store(std::clamp(place(), Long{0}, count - 1));
    };
    within(Row, rows);
    within(RowSel, rows);
    TopRow.store(std::clamp<Long>(TopRow(), 1, std::max<Long>(rows - visibleRows(), 1)));
    within(Col, columns);
    within(ColSel, columns);
}

void MSFlexGrid::moveTo(Long row, Long column)
{
    Row.store(checkedRow(row));
    RowSel.store(row);
    Col.store(checkedColumn(column));
    ColSel.store(column);
}

void MSFlexGrid::setTextMatrix(Long row, Long column, StringView text)
{
    rowAt(row).cells[columnAt(column)].assign(text);
    contentChanged();
}

void MSFlexGrid::setRowData(Long row, Long data) { rowAt(row).data = data; }

void MSFlexGrid::setColWidth(Long column, Long width)
{
    content_.widths[columnAt(column)] = width;
    contentChanged();
}

void MSFlexGrid::setColAlignment(Long column, Integer alignment)
{
    content_.alignments[columnAt(column)] = alignment;
    contentChanged();
}

void MSFlexGrid::Clear()
{
    for (GridRow& row : content_.rows)
        row = {std::vector<String>(content_.widths.size()), 0};
    contentChanged();
}

void MSFlexGrid::AddItem(StringView text)
{
    resize(Rows() + 1, Cols());
    for (String& cell : content_.rows.back().cells) {
        const std::size_t tab = text.find(u'\t');
        cell = String(text.substr(0, tab));
        text = tab == StringView::npos ? StringView() : text.substr(tab + 1);
    }
    contentChanged();
}

void MSFlexGrid::RemoveItem(Long row)
{
    if (checkedRow(row) == 0)
        fail(failure::listIndexOutside, decimalText(row));
    content_.rows.erase(content_.rows.begin() + row);
    resize(Rows() - 1, Cols());
}

Long MSFlexGrid::rowHeight() const { return std::max(RowHeightMin(), defaultRowHeight); }

Long MSFlexGrid::visibleRows() const { return std::max<Long>(Height() / rowHeight() - 1, 1); }

Long MSFlexGrid::lastTopRow() const { return std::max<Long>(Rows() - visibleRows(), 1); }

Long MSFlexGrid::CellLeft() const
{
    Long left = 0;
    for (Long column = 0; column < Col(); ++column)
        left += ColWidth(column);
    return left;
}

Long MSFlexGrid::CellTop() const
{
    const Long below = Row() == 0 ? 0 : Row() - TopRow() + 1;
    return below * rowHeight();
}

void MSFlexGrid::sealDesign()
{
    Control::sealDesign();
    design_ = content_;
}

void MSFlexGrid::restoreDesign()
{
    content_ = design_;
    Control::restoreDesign();
    contentChanged();
}

const Member* MSFlexGrid::memberNamed(StringView name) const
{
    using Grid = MSFlexGrid;
    static constexpr Member members[] = {
        property<&Grid::TextMatrix, &Grid::setTextMatrix>(u"TextMatrix"),
        property<&Grid::RowData, &Grid::setRowData>(u"RowData"),
        property<&Grid::ColWidth, &Grid::setColWidth>(u"ColWidth"),
        property<&Grid::ColAlignment, &Grid::setColAlignment>(u"ColAlignment"),
        property<&Grid::CellLeft>(u"CellLeft"),
        property<&Grid::CellTop>(u"CellTop"),
        property<&Grid::CellWidth>(u"CellWidth"),
        property<&Grid::CellHeight>(u"CellHeight"),
        method<&Grid::Clear>(u"Clear"),
        method<&Grid::AddItem>(u"AddItem"),
        method<&Grid::RemoveItem>(u"RemoveItem"),
    };
    const Member* found = findMember(members, name);
    return found != nullptr ? found : Control::memberNamed(name);
}

} // namespace zv
