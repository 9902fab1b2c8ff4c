#pragma once

#include "runtime/String.h"

#include <optional>
#include <span>
#include <vector>

namespace zv {

/// Unique index: columns of a table that no two rows may have alike.
struct UniqueIndex {
    String name; ///< "" where the engine does not tell it.
    std::vector<String> columns;
};

/// Whether the index covers the table's key, so that a retry with another key can succeed: the key of the
/// schema, or, for a table unknown to the schema, the primary key that is passed.
bool holdsKey(const UniqueIndex& index, StringView table, std::span<const String> primaryKey);

/// Whether the index that SQLite says to be broken ("UNIQUE constraint failed: Pais.IDPais") holds the key of
/// the table that the statement writes; one that a trigger writes is another. `primary`: SQLite says that it
/// is the primary key.
bool tellsTakenKey(StringView sqliteWords, StringView statement, bool primary = false);

/// Parses a statement for the table that it inserts into or updates.
std::optional<String> writtenTable(StringView statement);

} // namespace zv
