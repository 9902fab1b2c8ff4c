#pragma once

#include "data/Engine.h"

namespace zv {

/// What a school made elsewhere lacks for the dialogs to work, one line in Spanish for each finding. Extra
/// tables and columns are fine, but not in a table whose rows are written by position. Fails only if the
/// databases cannot be read.
std::vector<String> checkSchool(const School& school, Engine& engine);

/// What is there and cannot be read as the dialogs read it, one line for each table: no right to it, a name
/// that wants quotes, truth values that are no numbers. It asks for each table that is there, so that it
/// costs a statement each.
std::vector<String> checkAccess(const School& school, Engine& engine);

/// What the engine itself finds broken, one line for each database. It reads them to their end.
std::vector<String> checkDamage(const School& school, Engine& engine);

/// Whether the table is there in which stations register rows. The first that opens a row makes it, if he
/// may.
bool hasRegister(const School& school, Engine& engine);

} // namespace zv
