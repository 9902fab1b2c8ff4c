#pragma once

#include "runtime/String.h"

#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

namespace zv::sqlite {

/// Parameterised statement: "?" for the values that stood in it, and the values, in order. Statements that
/// differ in their values alone have one text, and so share one prepared statement.
struct Parameters {
    using Value = std::variant<std::int64_t, std::string>;
    String text;
    std::vector<Value> values;
};

/// Extracts the values of a statement; empty where that could change what it means or how it is answered.
/// Extracted is what is compared, assigned or inserted, and nothing else: what stands in a list of columns
/// names a field, and behind ORDER BY a number is a column.
std::optional<Parameters> parametersOf(StringView statement);

} // namespace zv::sqlite
