#pragma once

#include "forms/MSFlexGrid.h"
#include "views/Columns.h"
#include "win32/ControlView.h"

#include <optional>
#include <utility>
#include <vector>

namespace zv::win32 {

/// Heading of a grid: a click there is a click on the grid's fixed row. Edges are dragged as the system does.
class GridHeading final : public Window {
public:
    using Click = std::function<void(int place)>;
    GridHeading(HWND heading, Click click);
    void setHeight(int pixels) { height_ = pixels; }

protected:
    LRESULT receive(UINT message, WPARAM number, LPARAM data) override;

private:
    Click click_;
    int height_ = 0;
};

/// View of a grid, whose fixed row is the list's heading: a list of the system without rows of its own, which
/// asks for what it shows. Rows are drawn here, as high as the grid computes them, so that what code lays
/// over a cell covers it.
class GridView final : public ViewOf<MSFlexGrid> {
public:
    GridView(ViewSite& window, MSFlexGrid& grid, HWND parent);
    ~GridView() override;
    /// Left edge, within the grid, and width of the current cell's column as it is shown, in pixels; nothing
    /// for a hidden one.
    std::optional<std::pair<int, int>> currentColumn() const;
    /// Place of a cell (row 0 is the heading) within the grid's window; empty for one that is not seen.
    RECT cell(Long row, int place) const;
    HWND heading() const { return ListView_GetHeader(handle()); }
    bool told(UINT message, WPARAM number, LPARAM data, LRESULT& result) override;

protected:
    void followContent() override;
    bool inBulk() const override { return true; }
    void press(const Keystroke& key) override;
    LRESULT receive(UINT message, WPARAM number, LPARAM data) override;

private:
    void followHeight();
    void followColumns();
    void followTitles();
    /// Widths of the columns shown, in pixels: the model's; in a window that is not bare as the texts need
    /// them, or as a person has dragged them.
    std::vector<int> widths() const;
    std::vector<ColumnNeed> needs() const;
    int titleWidth(Long column) const;
    /// Width for the columns, in pixels.
    int room() const;
    void dragged();
    void followScroll();
    void scrolled();
    void drawFocus() const;
    void draw(const DRAWITEMSTRUCT& row) const;
    void drawCell(HDC device, RECT place, Long row, Long column) const;
    bool selected(Long row, Long column) const;
    void tellText(NMLVDISPINFOW& asked) const;
    bool paged(WPARAM code);
    void clicked(int x, int y);
    void choose(Long row, int place);
    void noteChosen();
    std::vector<Long> columns_;  ///< Those that are not hidden.
    std::vector<double> shares_; ///< Shares of the room that a person gave them.
    Long chosen_ = 0;            ///< Number of the line that was clicked last.
    int height_ = 0;             ///< Of a row, as it was asked for last.
    int following_ = 0;          ///< Re-entrancy flag: the window is being changed from the model.
    std::optional<GridHeading> heading_;
};

} // namespace zv::win32
