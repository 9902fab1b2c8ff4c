#pragma once

#include "runtime/String.h"

namespace zv::care {

/// Folding of a text for comparison: letters without case or accent, no blanks (but one between two digits).
/// Two texts that a person takes for the same fold to the same. ñ and ç are letters of their own: año is not
/// ano. Whether an accent is part of its letter or a mark behind it makes no difference.
String folded(StringView text);

} // namespace zv::care
