#pragma once

#include "runtime/Value.h"

#include <initializer_list>
#include <span>

namespace zv {

/// How values get into the text of a statement: the one place that formats them, whatever the regional
/// settings.

/// A text with its apostrophes doubled, as it stands between the apostrophes of a literal.
String doubled(StringView text);
/// A text as a literal: between apostrophes, its own doubled.
String textLiteral(StringView text);
/// Any value as a literal: NULL for Null and Empty, -1 or 0 for a truth value, a number with all its digits
/// and a point, a text as textLiteral. Fails with 13 for an object.
String literal(const Value& value);

/// Assembles a statement: each "{}" of the pattern, in order, gives way to the next value. Texts come as they
/// are (the pattern has the apostrophes, and doubled() or ComprobarComilla has made them safe), all else as
/// literal() has it. What a value holds is never read as a pattern. More values than places, or fewer, is a
/// std::logic_error.
String statement(StringView pattern, std::span<const Value> values);
inline String statement(StringView pattern, std::initializer_list<Value> values)
{
    return statement(pattern, std::span(values.begin(), values.size()));
}

} // namespace zv
