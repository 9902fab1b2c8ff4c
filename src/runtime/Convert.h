#pragma once

#include "runtime/Errors.h"
#include "runtime/Value.h"

namespace zv {

/// Conversions of the language. They round half to even, follow the regional settings where text is involved,
/// and fail with 6 (overflow), 13 (type mismatch) or 94 (Null where a value is needed). True is -1; Empty is
/// 0, False or "".
bool CBool(const Value& value);
Byte CByte(const Value& value);
Integer CInt(const Value& value);
Long CLng(const Value& value);
Single CSng(const Value& value);
Double CDbl(const Value& value);
Currency CCur(const Value& value);
/// Text of a value: numbers with the regional decimal mark and no leading blank, truth values
/// "Verdadero"/"Falso".
String CStr(const Value& value);
/// The same of a value that nobody else needs: its text is taken, not copied.
String CStr(Value&& value);
/// The object in a value. Fails with 91 for no object, with 13 for anything else.
ObjectPtr CObj(const Value& value);

/// The conversions above by result type, for templates.
template <class T>
T valueTo(const Value& value);
template <>
inline Value valueTo(const Value& value)
{
    return value;
}
template <>
inline bool valueTo(const Value& value)
{
    return CBool(value);
}
template <>
inline Byte valueTo(const Value& value)
{
    return CByte(value);
}
template <>
inline Integer valueTo(const Value& value)
{
    return CInt(value);
}
template <>
inline Long valueTo(const Value& value)
{
    return CLng(value);
}
template <>
inline Double valueTo(const Value& value)
{
    return CDbl(value);
}
template <>
inline String valueTo(const Value& value)
{
    return CStr(value);
}
template <>
inline ObjectPtr valueTo(const Value& value)
{
    return CObj(value);
}
/// Fails with 13 if it holds no array.
template <>
LongArray valueTo(const Value& value);

/// Text of a number, independent of the regional settings: decimal point, and a blank in the place of a sign
/// that is not negative.
String Str(const Value& number);
/// Parses the number at the start of a text (decimal point; blanks are skipped, also between digits), 0 if
/// there is none. Fails with 6 if it is too large.
Double Val(StringView text);
/// Whether the value parses as a number under the regional settings. Texts may have blanks around them, a
/// sign in front or behind, grouping, one decimal mark and an exponent. "" and Null are none; Empty is one.
bool IsNumeric(const Value& value);
/// A stored flag read as a truth value: Null counts as false.
bool isTrue(const Value& value);
/// Concatenation; Null counts as "".
String operator+(String left, const Value& right);

/// First and last characters of a text; a negative length fails with 5.
String Left(StringView text, long length);
String Right(StringView text, long length);

/// Decimal text of a whole number, as statements take it: no blank, no grouping.
String decimalText(std::int64_t number);
/// All digits of an amount of money, decimal point.
String decimalText(Currency amount);
/// Banker's rounding: half to even.
Double roundHalfEven(Double number);

} // namespace zv
