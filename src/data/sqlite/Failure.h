#pragma once

#include "data/DataError.h"

struct sqlite3;

namespace zv::sqlite {

/// When a statement failed: while it was read, or while it ran.
enum class Phase { preparing, running };

/// What a handle tells of its last failure.
DataError failureOf(sqlite3* handle, Phase phase, StringView statement);

} // namespace zv::sqlite
