#pragma once

#include "data/Connection.h"
#include "data/Schema.h"

namespace zv::host {

/// A table whose rows refer to a row: how many, and the first few by name.
struct Referrer {
    StringView table;
    Long count = 0;
    std::vector<String> examples;
};

/// Who refers to a row of a table, in the order of the school's tables. Parts of the row (a bank's branches)
/// are not among them, but those who refer to a part are.
std::vector<Referrer> referrers(Connection& centro, StringView table, Long key);

/// A row of the deleted-records database, by what a person knows it by.
struct DeletedRow {
    StringView table;
    Long key = 0;
    String name;
};

/// What can be restored: rows of the tables that the dialogs write, without those of which the
/// deleted-records database keeps only the key, and without parts of other rows.
std::vector<DeletedRow> deletedRows(Connection& borrado);

/// Moves a row, with its parts, to the deleted-records database, where a former row of that key gives way.
/// At every moment the row is in one of the two databases at least.
void moveToDeleted(School& school, StringView table, Long key);
/// Moves it back. Fails with a RuntimeError, and changes nothing, if its key is taken in the meantime.
void restore(School& school, StringView table, Long key);

} // namespace zv::host
