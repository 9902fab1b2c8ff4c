#pragma once

#include "data/Connection.h"
#include "progress/Definition.h"

#include <map>
#include <vector>

namespace zv::progress {

/// Reads what is missing in the reports of a section, in Spanish words, by pupil: an empty list of a report
/// that is whole. Has the pupils whom the report's dialog lists and who have not left; nobody of a section
/// that does not have that report. Fails with a DataError where the database does.
std::map<Long, std::vector<String>> missing(Connection& centro, Kind kind, Long section);

} // namespace zv::progress
