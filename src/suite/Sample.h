#pragma once

#include "data/Connection.h"

namespace zv {

/// Fills a new school with the sample, its illnesses enciphered by the suite's cipher. The school must have
/// all tables, empty. Fails as the database and the cipher do.
void fillSample(School& school);

} // namespace zv
