#pragma once

#include "runtime/String.h"

#include <optional>
#include <vector>

namespace zv::odbc {

/// What stands behind "odbc:": attributes "NAME=value" parted by ";", a value with signs of its own in braces
/// ("{a;b}", a closing brace doubled). Names match without regard to case; the first of a name counts.
class ConnectionText {
public:
    explicit ConnectionText(StringView text);

    std::optional<String> find(StringView name) const;
    /// Replaces the attribute's value, or adds it at the end.
    void set(StringView name, String value);
    /// Takes the attribute out and returns what it held.
    std::optional<String> take(StringView name);
    /// As the driver manager takes it.
    String text() const;
    /// For a person to read: without passwords.
    String shown() const;

private:
    struct Attribute {
        String name;
        String value;
    };
    std::vector<Attribute> attributes_;
};

} // namespace zv::odbc
