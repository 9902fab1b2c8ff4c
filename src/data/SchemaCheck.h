#pragma once

#include "data/Engine.h"

#include <optional>

namespace zv {

/// Schema check: what a school made elsewhere lacks for the dialogs to work, one line in Spanish for each
/// finding. Extra tables and columns are fine, but not in a table whose rows are written by position. Fails
/// only if the databases cannot be read.
std::vector<String> checkSchool(const School& school, Engine& engine);

/// Access check: what is there and cannot be read as the dialogs read it, one line for each table: no right
/// to it, a name that wants quotes, truth values that are no numbers. Costs a statement for each table.
std::vector<String> checkAccess(const School& school, Engine& engine);

/// Integrity check by the engine, one line for each database. Reads them whole.
std::vector<String> checkDamage(const School& school, Engine& engine);

/// Upgrade: what a school that an older version made, or another program, lacks of what this one makes, and
/// works without.
struct Lack {
    Database which = Database::centro;
    String name;      ///< "Alumno (fechabaja)" of an index; of the table of registrations its own.
    String statement; ///< In the engine's own SQL: adds it, and changes nothing that is there.
};
struct Lacks {
    std::vector<Lack> indexes;         ///< For the lookups; none where the engine does not tell its own.
    std::optional<Lack> registrations; ///< The first station that opens a row creates it, rights permitting.
    bool history = false;              ///< Never switched on.
};
Lacks lacksOf(const School& school, Engine& engine);

} // namespace zv
