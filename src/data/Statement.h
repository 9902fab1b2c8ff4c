#pragma once

#include "runtime/Value.h"

#include <initializer_list>
#include <span>

namespace zv {

/// Formatting of values into the text of a statement: the one place for it, independent of the regional
/// settings.

/// Escapes a text for a literal: its apostrophes doubled.
String doubled(StringView text);
/// A text as a literal: between apostrophes, its own doubled.
String textLiteral(StringView text);
/// Any value as a literal: NULL for Null and Empty, -1 or 0 for a truth value, a number with all its digits
/// and a point, a text as textLiteral. Fails with 13 for an object.
String literal(const Value& value);

/// Substitutes the values for the "{}" of the pattern, in order. Texts are inserted as they are (the pattern
/// has the apostrophes, and doubled() or ComprobarComilla has escaped them), all else as literal() has it. A
/// value is never read as a pattern. A number of values other than that of the "{}" is a std::logic_error.
String statement(StringView pattern, std::span<const Value> values);
inline String statement(StringView pattern, std::initializer_list<Value> values)
{
    return statement(pattern, std::span(values.begin(), values.size()));
}

} // namespace zv
