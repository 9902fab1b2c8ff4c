#pragma once

#include "runtime/String.h"

#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

namespace zv::sqlite {

/// A statement with places ("?") for values that stood in it, and the values, in order. Statements that
/// differ in their values alone have one text, so that the engine need not understand it anew.
struct Parameters {
    using Value = std::variant<std::int64_t, std::string>;
    String text;
    std::vector<Value> values;
};

/// Takes the values out of a statement; none where that could change what it means or how it is answered.
/// They are taken where a value is compared, assigned or inserted, and nowhere else: what stands in a list of
/// columns names a field, and behind ORDER BY a number is a column.
std::optional<Parameters> parametersOf(StringView statement);

} // namespace zv::sqlite
