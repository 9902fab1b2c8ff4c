#pragma once

#include "zvhost/Deletion.h"

namespace zv::host {

/// Notes of the deletions: a table of the host's own beside the deleted rows, made with the first note. It is
/// an extra: where it cannot be made or read, rows are deleted and restored without it.

/// Fills in when each row was deleted and by whom, as far as it was noted.
void addNotes(Connection& borrado, std::vector<DeletedRow>& rows);
/// Drops the note of a row that is restored.
void forgetNote(Connection& borrado, StringView table, Long key);

} // namespace zv::host
