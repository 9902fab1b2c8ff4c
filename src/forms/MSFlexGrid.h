#pragma once

#include "forms/Control.h"

#include <algorithm>

namespace zv {

/// A grid of texts with one fixed row, the heading, and no fixed column. Indexes count from 0; one out of
/// range fails with 381. Measures are twips.
class MSFlexGrid final : public Control {
public:
    MSFlexGrid(Container& container, StringView name, int index = noIndex);
    ~MSFlexGrid() override;
    bool takesFocus() const override { return true; }

    Property<Long> Rows{*this, u"Rows", 2, [this](const Long& rows) { resize(rows, Cols()); }};
    Property<Long> Cols{*this, u"Cols", 2, [this](const Long& columns) { resize(Rows(), columns); }};
    /// Current cell; assigning it selects that cell alone.
    Property<Long> Row{*this, u"Row", 1, [this](const Long& row) { moveTo(row, Col()); }};
    Property<Long> Col{*this, u"Col", 0, [this](const Long& column) { moveTo(Row(), column); }};
    Property<Long> RowSel{*this, u"RowSel", 1, [this](const Long& row) { RowSel.store(checkedRow(row)); }};
    Property<Long> ColSel{*this, u"ColSel", 0,
                          [this](const Long& column) { ColSel.store(checkedColumn(column)); }};
    /// Scroll position: the first row under the heading.
    Property<Long> TopRow{*this, u"TopRow", 1,
                          [this](const Long& row) { TopRow.store(std::max<Long>(checkedRow(row), 1)); }};
    Property<Long> RowHeightMin{*this, u"RowHeightMin"};

    Event<> Click;
    Event<> DblClick;
    Event<> EnterCell;
    Event<> LeaveCell;
    Event<> Scroll;

    const String& TextMatrix(Long row, Long column) const { return rowAt(row).cells[columnAt(column)]; }
    void setTextMatrix(Long row, Long column, StringView text);
    Long RowData(Long row) const { return rowAt(row).data; }
    void setRowData(Long row, Long data);
    /// 0 hides the column.
    Long ColWidth(Long column) const { return content_.widths[columnAt(column)]; }
    void setColWidth(Long column, Long width);
    /// 1 left, 4 centred, 7 right.
    Integer ColAlignment(Long column) const { return content_.alignments[columnAt(column)]; }
    void setColAlignment(Long column, Integer alignment);
    /// Empties every cell and row number; rows, columns and widths stay.
    void Clear();
    /// Appends a row; tab characters separate its cells.
    void AddItem(StringView text);
    /// Fails with 381 for the fixed row too.
    void RemoveItem(Long row);

    Long rowHeight() const;
    /// Number of rows under the heading that are seen whole.
    Long visibleRows() const;
    /// Last scroll position: the row under the heading when the grid is scrolled to its end.
    Long lastTopRow() const;
    /// Position and size of the current cell within the grid.
    Long CellLeft() const;
    Long CellTop() const;
    Long CellWidth() const { return ColWidth(Col()); }
    Long CellHeight() const { return rowHeight(); }

    void sealDesign() override;
    void restoreDesign() override;

protected:
    /// Beside the properties: the members above by their names.
    const Member* memberNamed(StringView name) const override;

private:
    struct GridRow {
        std::vector<String> cells;
        Long data = 0;
    };
    struct Content {
        std::vector<GridRow> rows;
        std::vector<Long> widths;
        std::vector<Integer> alignments;
    };
    Long checkedRow(Long row) const;
    Long checkedColumn(Long column) const;
    const GridRow& rowAt(Long row) const { return content_.rows[static_cast<std::size_t>(checkedRow(row))]; }
    GridRow& rowAt(Long row) { return content_.rows[static_cast<std::size_t>(checkedRow(row))]; }
    std::size_t columnAt(Long column) const { return static_cast<std::size_t>(checkedColumn(column)); }
    void resize(Long rows, Long columns);
    void moveTo(Long row, Long column);
    void keepInside(Long rows, Long columns);

    Content content_;
    Content design_;
};

} // namespace zv
