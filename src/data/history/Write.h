#pragma once

#include "data/history/Fields.h"

#include <optional>

namespace zv::history {

/// A statement that writes, as far as its rows must be known to keep what they were.
struct Write {
    enum class Kind { insert, update, remove };

    Kind kind = Kind::insert;
    String table;  ///< Without quotes or schema.
    String where;  ///< The condition's own text; "" for all rows.
    Fields values; ///< What is inserted or set. Inserted values without names have "" for a column. Empty
                   ///< where one is no literal.
};

/// Parses an INSERT of one row of literals, an UPDATE or a DELETE of one table; nullopt for anything else.
std::optional<Write> writeOf(StringView statement);

/// The table that an INSERT, UPDATE or DELETE of any form writes; "" for another statement.
String writtenTable(StringView statement);

/// Whether the name or the word stands in the statement, outside of texts and comments.
bool names(StringView statement, StringView name);

/// Whether a query reads texts of the table, and not merely counts its rows or looks for a key.
bool readsTexts(StringView query, StringView table);
/// The number that the query's condition gives for the column, as in "... Where IDEnfermedad=7"; nullopt if
/// it gives none.
std::optional<Long> numberAskedFor(StringView query, StringView column);

} // namespace zv::history
