#pragma once

#include "runtime/String.h"

#include <optional>
#include <span>
#include <vector>

namespace zv {

/// Columns of a table that no two rows may have alike.
struct UniqueIndex {
    String name; ///< "" where it is not told.
    std::vector<String> columns;
};

/// Whether it holds the table's key, so that a row with another key would not break it: the key that the
/// schema tells, or, for a table that the schema does not know, the primary key that is handed in.
bool holdsKey(const UniqueIndex& index, StringView table, std::span<const String> primaryKey = {});

/// Whether the index that SQLite says to be broken ("UNIQUE constraint failed: Pais.IDPais") holds the key of
/// the table that the statement writes; one that a trigger writes is another. `primary`: SQLite says that it
/// is the primary key.
bool tellsTakenKey(StringView sqliteWords, StringView statement, bool primary = false);

/// The table that a statement inserts into or updates.
std::optional<String> writtenTable(StringView statement);

} // namespace zv
