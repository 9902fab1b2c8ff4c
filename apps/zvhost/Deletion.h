#pragma once

#include "care/joins/References.h"
#include "data/Connection.h"
#include "data/Schema.h"

namespace zv::host {

using care::nameOfRow;
using care::Referrer;
using care::referrers;

/// Row of the deleted-records database, with the name by which a person knows it.
struct DeletedRow {
    StringView table;
    Long key = 0;
    String name;
    String moment;    ///< When it was deleted, in UTC: "2024-09-12 08:30:00.125"; "" where nobody noted it.
    Integer user = 0; ///< Who deleted it, where `moment` is known.
};

/// Lists what can be restored: rows of the tables that the dialogs write, without those of which the
/// deleted-records database keeps only the key, and without parts of other rows. The last deleted stands
/// first; those without a date come at the end.
std::vector<DeletedRow> deletedRows(Connection& borrado);

/// Moves a row, with its parts, to the deleted-records database, where a former row of that key is replaced.
/// Copy first, then delete: at every moment one of the two databases has the row.
void moveToDeleted(School& school, StringView table, Long key);
/// Notes who deleted a row, and that it was now. Without the right to make the table for it nothing is noted.
void noteDeletion(Connection& borrado, StringView table, Long key, Integer user);
/// Moves it back. Fails with a RuntimeError, and changes nothing, if its key was taken in the meantime.
void restore(School& school, StringView table, Long key);

} // namespace zv::host
