#pragma once

#include "runtime/String.h"

#include <system_error>

namespace zv {

/// The system's own words for an error for which wordsFor() has none.
String systemWords(const std::error_code& error);

} // namespace zv
