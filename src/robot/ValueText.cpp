#include "robot/ValueText.h"

#include "robot/Guion.h"
#include "runtime/Convert.h"

#include <array>
#include <charconv>

namespace zv {

namespace {

/// Formats without an exponent.
template <class Number>
String digits(Number number)
{
    if (number == 0)
        return u"0";
    std::array<char, 512> room{};
    const auto end =
        std::to_chars(room.data(), room.data() + room.size(), number, std::chars_format::fixed).ptr;
    return {room.data(), end};
}

struct ToText {
    String operator()(Empty) const { return u"Empty"; }
    String operator()(Null) const { return u"NULL"; }
    String operator()(bool truth) const { return truth ? u"True" : u"False"; }
    String operator()(Byte number) const { return decimalText(number); }
    String operator()(Integer number) const { return decimalText(number); }
    String operator()(Long number) const { return decimalText(number); }
    String operator()(Single number) const { return digits(number); }
    String operator()(Double number) const { return digits(number); }
    String operator()(Currency amount) const { return decimalText(amount); }
    String operator()(const String& text) const { return zv::quoted(text); }
    String operator()(const ObjectPtr& object) const { return object ? u"Object" : u"Nothing"; }
    String operator()(const LongArray& array) const
    {
        String result;
        if (array)
            for (const Long number : *array)
                result += (result.empty() ? u"" : u",") + decimalText(number);
        return result;
    }
};

} // namespace

String valueText(const Value& value) { return std::visit(ToText(), value.data()); }

} // namespace zv
