#include "data/Statement.h"

#include "runtime/Convert.h"

#include <array>
#include <charconv>
#include <cmath>
#include <stdexcept>
#include <type_traits>

namespace zv {
namespace {

/// Visitor of all kinds but texts.
struct LiteralText {
    String operator()(Empty /*none*/) const { return u"NULL"; }
    String operator()(Null /*none*/) const { return u"NULL"; }
    String operator()(bool truth) const { return truth ? u"-1" : u"0"; }
    String operator()(Currency amount) const { return decimalText(amount); }
    template <class T>
    String operator()(const T& other) const
    {
        if constexpr (std::is_floating_point_v<T>) {
            // Infinity has no digits; a number beyond the range is read as it.
            if (std::isinf(other))
                return other < 0 ? u"-9e999" : u"9e999";
            std::array<char, 64> room{};
            const auto end = std::to_chars(room.data(), room.data() + room.size(), other);
            return {room.data(), end.ptr};
        } else if constexpr (std::is_integral_v<T>) {
            return decimalText(other);
        } else {
            fail(failure::typeMismatch);
        }
    }
};

} // namespace

String doubled(StringView text) { return Replace(text, u"'", u"''"); }

String textLiteral(StringView text) { return u"'" + doubled(text) + u"'"; }

String literal(const Value& value)
{
    const auto* text = value.as<String>();
    return text != nullptr ? textLiteral(*text) : std::visit(LiteralText(), value.data());
}

String statement(StringView pattern, std::span<const Value> values)
{
    constexpr StringView place = u"{}";
    String result;
    for (const Value& value : values) {
        const std::size_t found = pattern.find(place);
        if (found == StringView::npos)
            throw std::logic_error("statement: more values than places");
        result += pattern.substr(0, found);
        const auto* text = value.as<String>();
        result += text != nullptr ? *text : literal(value);
        pattern.remove_prefix(found + place.size());
    }
    if (pattern.find(place) != StringView::npos)
        throw std::logic_error("statement: more places than values");
    return result += pattern;
}

} // namespace zv
