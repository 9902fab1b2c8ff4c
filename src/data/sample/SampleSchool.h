#pragma once

#include "data/Connection.h"

#include <functional>

namespace zv {

/// Fills a new school with believable data, deterministic: catalogues, banks, staff, sections, pupils, some
/// reports. The school must have all tables, empty. Fails with a DataError, and the failing database is
/// rolled back.
void fillSampleSchool(School& school);
/// Adds the illnesses, enciphered by a callback since only the school's own cipher can. The table must be
/// empty.
void fillSampleIllnesses(School& school, const std::function<String(StringView)>& encipher);

} // namespace zv
