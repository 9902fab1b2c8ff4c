#pragma once

#include "data/DataError.h"
#include "runtime/String.h"

#include <map>
#include <optional>
#include <vector>

namespace zv {

/// Parsed ODBC connection string, the part of a URL behind "odbc:": attributes "NAME=value" separated by ";",
/// a value with special characters in braces ("{a;b}", a closing brace doubled). Names match without regard
/// to case; of duplicates the first counts.
class ConnectionText {
public:
    explicit ConnectionText(StringView text);

    /// Fails on what would have no effect, or another than is meant: an attribute that has two values or
    /// lacks its "=", a value that its braces do not end, and a name that is almost one of ours.
    void refuseMistakes() const;
    std::optional<String> find(StringView name) const;
    /// All, by their names in small letters.
    std::map<String, String> values() const;
    /// Replaces the attribute's value, also where it was given twice, or adds it at the end.
    void set(StringView name, String value);
    /// Removes the attribute and returns its value.
    std::optional<String> take(StringView name);
    /// Serialised for the driver manager.
    String text() const;
    /// Redacted for display: without passwords; of what lacks its "=" not even the value before it, which may
    /// be the first half of one.
    String shown() const;

private:
    struct Attribute {
        String name;
        String value;
        bool hasSign = true;
        bool isWhole = true; ///< Its braces end it.
    };
    static String text(const std::vector<Attribute>& attributes);

    std::vector<Attribute> attributes_;
};

/// Fails with the text as it is shown, and what is wrong with it.
[[noreturn]] void failFor(const ConnectionText& text, StringView words,
                          std::int32_t number = failure::otherData);

} // namespace zv
