#pragma once

#include <string>
#include <string_view>

namespace zv {

/// Text of the system: UTF-16. Lengths, positions and MaxLength count 16-bit units.
using String = std::u16string;
using StringView = std::u16string_view;

/// UTF-8 for files, terminals and engines. A lone surrogate becomes U+FFFD: check with isWellFormed first
/// where nothing may be lost.
std::string toUtf8(StringView text);
/// Fails with std::invalid_argument where the bytes are no UTF-8.
String fromUtf8(std::string_view bytes);
/// False if a surrogate stands alone.
bool isWellFormed(StringView text);
/// The longest start of the text of at most `units` units that does not part a surrogate pair.
StringView cut(StringView text, std::size_t units);

/// Names of objects, tables and columns are matched without regard to (ASCII) case.
bool sameName(StringView a, StringView b);
String lowerName(StringView name);
/// For maps whose keys are names.
struct NameLess {
    using is_transparent = void;
    bool operator()(StringView a, StringView b) const;
};

/// Without the blanks (U+0020 only) around it.
String Trim(StringView text);
String Replace(StringView text, StringView what, StringView by);

} // namespace zv
