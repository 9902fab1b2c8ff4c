#pragma once

#include "runtime/Value.h"

#include <vector>

namespace zv::history {

/// A column of a row, and what it holds.
struct Field {
    String column;
    Value value;
};
using Fields = std::vector<Field>;

/// Serialises columns as the SET clause of a statement has them: "Nombre='Banco',Numero='2100'". Names in
/// that order; texts, numbers and NULL come back the same from fieldsIn().
String textOf(const Fields& fields);
/// Parses such a clause; an empty text has no fields. Fails with badStatement for one that is none.
Fields fieldsIn(StringView text);
/// Condition of a WHERE that finds a row by these columns.
String conditionOf(const Fields& fields);

/// Lookup without regard to case; nullptr if there is none.
const Value* valueOf(const Fields& fields, StringView column);
/// Whether two values are the same for a database: 1 and 1.0 are, a text and a number are not.
bool same(const Value& one, const Value& other);
bool same(const Fields& one, const Fields& other);

} // namespace zv::history
