#pragma once

#include "runtime/Value.h"

namespace zv {

/// Formats a value for guiones, independent of the regional settings: texts in quotes, True and False, whole
/// numbers, other numbers with a point, NULL, Nothing for no object, Object for one.
String valueText(const Value& value);

} // namespace zv
