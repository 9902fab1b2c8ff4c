#pragma once

#include "data/DataError.h"

namespace zv::odbc {

/// First diagnostic record of a driver.
struct Diagnosis {
    std::string state; ///< SQLSTATE, five characters.
    std::int32_t native = 0;
    String words;
};

/// Maps a diagnostic record to our error numbers. `lost`: the driver reports its connection dead, which
/// overrides the record.
DataError failureOf(const Diagnosis& diagnosis, bool lost, StringView statement);

/// Whether it is the server's own word, and not that of a driver which found none.
bool saidByServer(const DataError& failure);

/// Whether a server refused a change, and did nothing of it, since it takes none: a standby, or read only.
bool isReadOnly(const DataError& failure);

/// The engine's own number of a failure that failureOf() made; 0 for any other.
std::int32_t ownNumber(const DataError& failure);

} // namespace zv::odbc
