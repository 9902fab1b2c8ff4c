#pragma once

#include "runtime/String.h"

namespace zv {

/// The attributes of a connection string by which a school is where it is, in one order and in small names:
/// who asks and for how long does not matter, nor which of the servers that hold it are listed. The same for
/// two ways to write one place, as far as can be told without going there.
String placeIn(StringView attributes);

} // namespace zv
