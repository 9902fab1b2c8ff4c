#pragma once

#include <string>
#include <string_view>

namespace zv {

/// Text of the system: UTF-16. Lengths, positions and MaxLength count 16-bit units.
using String = std::u16string;
using StringView = std::u16string_view;

/// Converts to UTF-8, for files, terminals and engines. Lossy: a lone surrogate becomes U+FFFD; check with
/// isWellFormed first where that matters.
std::string toUtf8(StringView text);
/// Fails with std::invalid_argument on invalid UTF-8.
String fromUtf8(std::string_view bytes);
/// Whether it is valid UTF-16: no lone surrogate.
bool isWellFormed(StringView text);
/// Truncates to at most `units` units without splitting a surrogate pair.
StringView cut(StringView text, std::size_t units);

/// Equality of names of objects, tables and columns, without regard to (ASCII) case.
bool sameName(StringView a, StringView b);
String lowerName(StringView name);
/// Comparator for maps keyed by names.
struct NameLess {
    using is_transparent = void;
    bool operator()(StringView a, StringView b) const;
};
/// Hash and equality for those where no order is wanted.
struct NameHash {
    using is_transparent = void;
    std::size_t operator()(StringView name) const;
};
struct SameName {
    using is_transparent = void;
    bool operator()(StringView a, StringView b) const { return sameName(a, b); }
};

/// Strips blanks (U+0020 only) at both ends.
String Trim(StringView text);
String Replace(StringView text, StringView what, StringView by);

} // namespace zv
