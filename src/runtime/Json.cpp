#include "runtime/Json.h"

#include "runtime/Convert.h"

namespace zv {

String jsonText(StringView text)
{
    constexpr StringView digits = u"0123456789abcdef";
    String result = u"\"";
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t c = text[i];
        const bool high = c >= 0xD800 && c < 0xDC00;
        const bool pair = high && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000;
        if (pair) {
            result += text.substr(i++, 2);
        } else if (c < u' ' || (c >= 0xD800 && c < 0xE000)) {
            result += u"\\u";
            for (int shift = 12; shift >= 0; shift -= 4)
                result += digits[static_cast<std::size_t>(c >> shift & 0xF)];
        } else {
            if (c == u'"' || c == u'\\')
                result += u'\\';
            result += c;
        }
    }
    return result + u"\"";
}

JsonObject& JsonObject::raw(StringView name, StringView value)
{
    members_ += (members_.empty() ? u"" : u",") + jsonText(name) + u":" + String(value);
    return *this;
}

JsonObject& JsonObject::text(StringView name, StringView value) { return raw(name, jsonText(value)); }

JsonObject& JsonObject::number(StringView name, std::int64_t value) { return raw(name, decimalText(value)); }

JsonObject& JsonObject::object(StringView name, const JsonObject& value) { return raw(name, value.str()); }

} // namespace zv
