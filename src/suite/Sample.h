#pragma once

#include "data/Connection.h"

namespace zv {

/// Fills a new school with the sample, its illnesses enciphered by the suite's cipher. Precondition: all
/// tables exist and are empty. Fails with a RuntimeError of the database or the cipher.
void fillSample(School& school);

} // namespace zv
