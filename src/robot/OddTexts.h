#pragma once

#include "runtime/String.h"

#include <vector>

namespace zv {

/// Corpus of fuzz texts, deterministic: quotes, pieces of SQL and of driver escapes, backslashes, code 0
/// and other controls, writing from right to left, emoji, combining marks, lone surrogates, and long ones of
/// 200 and 70,000 units. More than 200, without duplicates.
std::vector<String> oddTexts();

} // namespace zv
