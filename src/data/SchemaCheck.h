#pragma once

#include "data/Engine.h"

namespace zv {

/// What a school made elsewhere lacks for the dialogs to work, one line in Spanish for each finding. Extra
/// tables and columns are fine, but not in a table whose rows are written by position. Fails only if the
/// databases cannot be read.
std::vector<String> checkSchool(const School& school, Engine& engine);

} // namespace zv
