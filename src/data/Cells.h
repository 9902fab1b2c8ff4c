#pragma once

#include "data/Connection.h"

namespace zv {

/// 0 for Null and Empty.
Long longIn(const Value& value);
/// "" for Null.
String textIn(const Value& value);
/// Whether nothing but blanks and line ends stands in it.
bool isBlank(StringView text);

} // namespace zv
