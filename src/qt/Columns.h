#pragma once

#include <QTableView>

#include <vector>

class QHelpEvent;

namespace zv {

/// Width that each column of the table needs for its title and its first texts, in pixels.
std::vector<int> columnNeeds(const QTableView& table);

/// Widths of the table's columns, in pixels, so that they fill that room. What the columns do not need is
/// shared out in proportion; where it is too little, the widest give way until all fit, but titles stay
/// whole, and some letters of each text.
std::vector<int> columnsIn(const QTableView& table, int room);

/// Shows a cell's whole text at the pointer, if its column is too narrow for it.
void tellCutCell(QTableView& table, const QHelpEvent& event);

} // namespace zv
