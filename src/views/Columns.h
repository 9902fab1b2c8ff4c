#pragma once

#include <functional>
#include <vector>

namespace zv {

/// Rows of a grid that are measured: long lists open as fast as short ones.
inline constexpr int measuredRows = 200;

/// What a column of a grid needs, in pixels.
struct ColumnNeed {
    int texts = 0;   ///< For its title and its first texts.
    int title = 0;   ///< For its title alone, which stays whole.
    int letters = 0; ///< For some letters of a text.
};

/// Widths that fill the room. What the columns do not need is shared out in proportion; where it is too
/// little, the widest give way until all fit, but titles stay whole, and some letters of each text.
std::vector<int> columnsIn(const std::vector<ColumnNeed>& needs, int room);

/// Widths of a grid's columns, in pixels: the model's, which fill the room that there is; other ones where
/// texts need them; or as a person dragged them, in shares of the room, if there are as many of those. The
/// last one has what is left, and never less than its title.
std::vector<int> columnWidths(std::vector<int> model, const std::vector<double>& shares, int room,
                              const std::function<std::vector<ColumnNeed>()>& needs, int lastTitle);

} // namespace zv
