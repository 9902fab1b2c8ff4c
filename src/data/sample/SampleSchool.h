#pragma once

#include "data/Connection.h"

#include <functional>

namespace zv {

/// Fills a new school with a believable one, the same each time: catalogues, banks, staff, sections, pupils,
/// some reports. The school must have all tables, empty. Fails with a DataError, and what the failing
/// database had got is gone.
void fillSampleSchool(School& school);
/// Adds the illnesses, which only the cipher of the school can write. The table must be empty.
void fillSampleIllnesses(School& school, const std::function<String(StringView)>& encipher);

} // namespace zv
