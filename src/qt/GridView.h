#pragma once

#include "forms/MSFlexGrid.h"
#include "qt/ControlView.h"

#include <QTableView>

#include <optional>
#include <utility>
#include <vector>

namespace zv {

/// View of a grid, whose fixed row is the table's heading. Rows are drawn as high as the grid computes them,
/// so that what code lays over a cell covers it.
class GridView final : public ViewOf<MSFlexGrid, QTableView> {
public:
    GridView(ViewSite& window, MSFlexGrid& grid, QWidget& parent);
    ~GridView() override;
    /// Left edge, within the grid, and width of the current cell's column as it is shown, in pixels; nothing
    /// for a hidden one.
    std::optional<std::pair<int, int>> currentColumn() const;

protected:
    void followContent() override;
    bool inBulk() const override { return true; }
    bool press(const Keystroke& key) override;
    bool handle(QObject& watched, QEvent& event) override;

private:
    class Cells;
    void followSizes();
    /// Widths of the columns shown, in pixels: the model's; in a window that is not bare as the person
    /// dragged them, or else in the model's proportion over all the room there is, or by their texts where
    /// that would cut one.
    std::vector<int> widths() const;
    int room() const;
    void dragged();
    bool drags(QEvent& event);
    void followSelection();
    void noteChosen();
    void choose(Long row, int place);
    void clicked(const QObject& watched, const QPoint& where);
    bool page(int key);
    void scrolled(int top);
    std::unique_ptr<Cells> cells_;
    bool following_ = false;
    bool dragging_ = false;
    std::vector<double> shares_; ///< Of the room, for each column shown; empty until a person drags one.
    bool selecting_ = false;
    std::optional<Long> chosen_; ///< RowData of the line clicked last.
};

} // namespace zv
