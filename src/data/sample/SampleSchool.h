#pragma once

#include "data/Connection.h"

namespace zv {

/// Fills a new school with a believable one, the same each time: catalogues, banks, staff, sections, pupils,
/// some reports. The school must have all tables, empty. Fails with a DataError, and what the failing
/// database had got is gone.
void fillSampleSchool(School& school);

} // namespace zv
