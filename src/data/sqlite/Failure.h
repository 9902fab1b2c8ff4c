#pragma once

#include "data/DataError.h"

struct sqlite3;

namespace zv::sqlite {

/// Phase of the failure: while the statement was prepared, or while it ran.
enum class Phase { preparing, running };

/// Maps the last failure of a handle to a DataError.
DataError failureOf(sqlite3* handle, Phase phase, StringView statement);

} // namespace zv::sqlite
