#pragma once

#include "data/DataError.h"

namespace zv::odbc {

/// What a driver tells of a failure: the first of its records.
struct Diagnosis {
    std::string state; ///< SQLSTATE, five characters.
    std::int32_t native = 0;
    String words;
};

/// The failure of a statement. `lost`: the driver says that its connection is dead, whatever it calls the
/// failure.
DataError failureOf(const Diagnosis& diagnosis, bool lost, StringView statement);

} // namespace zv::odbc
