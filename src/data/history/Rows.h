#pragma once

#include "data/Connection.h"
#include "data/Schema.h"
#include "data/history/Fields.h"

#include <span>

namespace zv::history {

/// The columns that find a row of the table.
inline std::span<const schema::Column> keyColumns(const schema::Table& table)
{
    return table.columns().first(table.keyColumns);
}
/// Condition that finds the row by its key: "IDBanco=7". "" where a column of the key is not among the
/// fields.
String keyOf(const schema::Table& table, const Fields& fields);
/// Reads these columns of the rows that meet the condition ("" for all).
std::vector<Fields> rowsOf(Connection& centro, StringView table, const std::vector<String>& columns,
                           StringView condition);

} // namespace zv::history
