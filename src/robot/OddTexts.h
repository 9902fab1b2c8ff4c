#pragma once

#include "runtime/String.h"

#include <vector>

namespace zv {

/// Texts that have broken programs: quotes, pieces of SQL and of what drivers replace, backslashes, code 0
/// and other controls, writing from right to left, emoji, combining marks, lone surrogates, and long ones of
/// 200 and 70,000 units. More than 200, none twice, the same each time.
std::vector<String> oddTexts();

} // namespace zv
