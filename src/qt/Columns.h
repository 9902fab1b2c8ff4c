#pragma once

#include "views/Columns.h"

#include <QTableView>

#include <vector>

class QHelpEvent;

namespace zv {

/// What each column of the table needs for its title and its first texts.
std::vector<ColumnNeed> columnNeeds(const QTableView& table);

/// Widths of the table's columns, in pixels, so that they fill that room.
inline std::vector<int> columnsIn(const QTableView& table, int room)
{
    return columnsIn(columnNeeds(table), room);
}

/// Shows a cell's whole text at the pointer, if its column is too narrow for it.
void tellCutCell(QTableView& table, const QHelpEvent& event);

} // namespace zv
