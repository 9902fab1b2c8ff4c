#pragma once

#include "forms/MSFlexGrid.h"
#include "qt/ControlView.h"

#include <QTableView>

#include <optional>

namespace zv {

/// View of a grid, whose fixed row is the table's heading. Rows are drawn as high as the grid computes them,
/// so that what code lays over a cell covers it.
class GridView final : public ViewOf<MSFlexGrid, QTableView> {
public:
    GridView(ViewHost& window, MSFlexGrid& grid, QWidget& parent);
    ~GridView() override;

protected:
    void followContent() override;
    bool inBulk() const override { return true; }
    bool press(const Keystroke& key) override;
    bool handle(QObject& watched, QEvent& event) override;

private:
    class Cells;
    void followSizes();
    void followSelection();
    void noteChosen();
    void choose(Long row, int place);
    void clicked(const QObject& watched, const QPoint& where);
    bool page(int key);
    void scrolled(int top);
    std::unique_ptr<Cells> cells_;
    bool following_ = false;
    bool selecting_ = false;
    std::optional<Long> chosen_; ///< RowData of the line clicked last.
};

} // namespace zv
