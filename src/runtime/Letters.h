#pragma once

#include "runtime/String.h"

namespace zv {

/// Lower case of what a person reads or types, for comparisons that do not regard it: of ASCII, and of
/// Latin-1, which the accented letters of Spain's languages belong to. Names have lowerName, as engines
/// compare them.
String lowerLetters(StringView text);

} // namespace zv
