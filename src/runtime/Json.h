#pragma once

#include "runtime/String.h"

namespace zv {

/// A text in JSON's quotes. Controls and lone surrogates, which UTF-8 does not have, by their number.
String jsonText(StringView text);

/// Writer of one JSON object; the only JSON that is written here, so that no library is wanted, which the
/// build for Windows would have to bring along.
class JsonObject {
public:
    JsonObject& text(StringView name, StringView value);
    JsonObject& number(StringView name, std::int64_t value);
    /// A value that is JSON already: a number, null.
    JsonObject& raw(StringView name, StringView value);
    JsonObject& object(StringView name, const JsonObject& value);
    String str() const { return u"{" + members_ + u"}"; }

private:
    String members_;
};

} // namespace zv
