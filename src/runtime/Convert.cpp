#include "runtime/Convert.h"

#include "runtime/Region.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

namespace zv {

namespace {

bool isDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }
bool isSign(char16_t unit) { return unit == u'+' || unit == u'-'; }

/// Parser: normalises a number at the start of a text into the form that std::from_chars reads.
class NumberReader {
public:
    NumberReader(StringView text, Region marks) : text_(text), marks_(marks) {}

    /// Grammar: sign, digits, mark, digits, exponent. False if there is no digit.
    bool read()
    {
        blanks();
        readSign();
        blanks();
        const bool whole = digits(true);
        const bool fraction = marked() && digits(false);
        if (!whole && !fraction)
            return false;
        readExponent();
        return true;
    }
    /// Accepts the rest of a text that is a number as a whole: blanks and, without a leading one, a sign.
    bool finishes()
    {
        blanks();
        if (!signed_ && at_ < text_.size() && isSign(text_[at_]))
            readSign();
        blanks();
        return at_ == text_.size();
    }
    /// Infinity on overflow.
    Double value() const
    {
        Double number = 0;
        const auto error = std::from_chars(plain_.data(), plain_.data() + plain_.size(), number).ec;
        if (error == std::errc::result_out_of_range)
            number = tiny() ? 0 : std::numeric_limits<Double>::infinity();
        return negative_ ? -number : number;
    }

private:
    void blanks()
    {
        while (at_ < text_.size() && text_[at_] == u' ')
            ++at_;
    }
    void readSign()
    {
        if (at_ == text_.size() || !isSign(text_[at_]))
            return;
        negative_ = text_[at_++] == u'-';
        signed_ = true;
    }
    bool digits(bool grouped)
    {
        bool any = false;
        for (; at_ < text_.size(); ++at_) {
            if (isDigit(text_[at_])) {
                plain_.push_back(static_cast<char>(text_[at_]));
                any = true;
            } else if (!(grouped && any && text_[at_] == marks_.grouping)) {
                break;
            }
        }
        return any;
    }
    bool marked()
    {
        if (at_ == text_.size() || text_[at_] != marks_.decimalMark)
            return false;
        ++at_;
        plain_ += plain_.empty() ? "0." : ".";
        return true;
    }
    void readExponent()
    {
        if (plain_.back() == '.')
            plain_.pop_back();
        std::size_t at = at_;
        if (at == text_.size() || StringView(u"eEdD").find(text_[at]) == StringView::npos)
            return;
        const bool down = ++at < text_.size() && text_[at] == u'-';
        if (at < text_.size() && isSign(text_[at]))
            ++at;
        std::string power;
        for (; at < text_.size() && isDigit(text_[at]); ++at)
            power.push_back(static_cast<char>(text_[at]));
        if (power.empty())
            return;
        at_ = at;
        down_ = down;
        plain_ += (down ? "e-" : "e+") + power;
    }

    /// Tells underflow from overflow, for which the library has one error.
    bool tiny() const
    {
        const std::string_view whole = std::string_view(plain_).substr(0, plain_.find_first_of(".e"));
        return down_ || whole.find_first_not_of('0') == std::string_view::npos;
    }

    StringView text_;
    Region marks_;
    std::size_t at_ = 0;
    std::string plain_;
    bool negative_ = false;
    bool signed_ = false;
    bool down_ = false;
};

/// Parses the whole text under the regional settings; infinity on overflow.
std::optional<Double> parsed(StringView text)
{
    NumberReader reader(text, region());
    if (!reader.read() || !reader.finishes())
        return std::nullopt;
    return reader.value();
}

Double inRange(Double number)
{
    if (!std::isfinite(number))
        fail(failure::overflow);
    return number;
}

std::optional<bool> truthWord(StringView text)
{
    if (sameName(text, u"True") || sameName(text, u"Verdadero"))
        return true;
    if (sameName(text, u"False") || sameName(text, u"Falso"))
        return false;
    return std::nullopt;
}

/// Visitor behind every conversion to a number.
struct ToNumber {
    Double operator()(Empty) const { return 0; }
    Double operator()(Null) const { fail(failure::invalidNull); }
    Double operator()(bool truth) const { return truth ? -1 : 0; }
    Double operator()(Currency amount) const { return static_cast<Double>(amount.tenThousandths) / 10000; }
    Double operator()(const String& text) const
    {
        const auto number = parsed(text);
        if (!number)
            fail(failure::typeMismatch);
        return inRange(*number);
    }
    Double operator()(const ObjectPtr&) const { fail(failure::typeMismatch); }
    Double operator()(const LongArray&) const { fail(failure::typeMismatch); }
    template <class Number>
    Double operator()(Number number) const
    {
        return static_cast<Double>(number);
    }
};

template <class Whole>
Whole toWhole(const Value& value)
{
    if (const auto* number = value.as<Long>(); number && std::in_range<Whole>(*number))
        return static_cast<Whole>(*number);
    const Double rounded = roundHalfEven(CDbl(value));
    if (!(rounded >= std::numeric_limits<Whole>::min() && rounded <= std::numeric_limits<Whole>::max()))
        fail(failure::overflow);
    return static_cast<Whole>(rounded);
}

/// Formats with as many significant digits as the type holds, decimal point, no trailing zeros; in scientific
/// notation if it would need more digits than that.
std::string generalText(Double number, int significant)
{
    char buffer[40];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, inRange(number),
                                   std::chars_format::scientific, significant - 1)
                         .ptr;
    const std::string scientific(buffer, end);
    const std::size_t mark = scientific.find('e');
    const int power = std::stoi(scientific.substr(mark + 1));
    std::string digits;
    for (const char c : scientific.substr(0, mark))
        if (c >= '0' && c <= '9')
            digits.push_back(c);
    digits.erase(digits.find_last_not_of('0') + 1);
    if (digits.empty())
        return "0";
    const std::string sign = number < 0 ? "-" : "";
    const int length = static_cast<int>(digits.size());
    if (power >= significant || length - 1 - power > significant) {
        const std::string fraction = length > 1 ? "." + digits.substr(1) : "";
        const std::string place = std::to_string(std::abs(power));
        return sign + digits.substr(0, 1) + fraction + (power < 0 ? "E-" : "E+") +
               (place.size() < 2 ? "0" : "") + place;
    }
    if (power < 0)
        return sign + "0." + std::string(static_cast<std::size_t>(-power - 1), '0') + digits;
    if (length <= power + 1)
        return sign + digits + std::string(static_cast<std::size_t>(power + 1 - length), '0');
    return sign + digits.substr(0, static_cast<std::size_t>(power) + 1) + "." +
           digits.substr(static_cast<std::size_t>(power) + 1);
}

String withMark(const std::string& plain, char16_t mark)
{
    String text = fromUtf8(plain);
    const std::size_t point = text.find(u'.');
    if (point != String::npos)
        text[point] = mark;
    return text;
}

std::string currencyText(Currency amount)
{
    const bool negative = amount.tenThousandths < 0;
    const auto units = negative ? 0 - static_cast<std::uint64_t>(amount.tenThousandths)
                                : static_cast<std::uint64_t>(amount.tenThousandths);
    std::string text = std::to_string(units / 10000);
    std::string fraction = std::to_string(units % 10000 + 10000).substr(1);
    fraction.erase(fraction.find_last_not_of('0') + 1);
    if (!fraction.empty())
        text += "." + fraction;
    return negative ? "-" + text : text;
}

struct ToText {
    char16_t mark;
    String operator()(Empty) const { return {}; }
    String operator()(Null) const { fail(failure::invalidNull); }
    String operator()(bool truth) const { return truth ? u"Verdadero" : u"Falso"; }
    String operator()(Single number) const
    {
        return withMark(generalText(static_cast<Double>(number), 7), mark);
    }
    String operator()(Double number) const { return withMark(generalText(number, 15), mark); }
    String operator()(Currency amount) const { return withMark(currencyText(amount), mark); }
    String operator()(const String& text) const { return text; }
    String operator()(const ObjectPtr&) const { fail(failure::typeMismatch); }
    String operator()(const LongArray&) const { fail(failure::typeMismatch); }
    template <class Whole>
    String operator()(Whole number) const
    {
        return decimalText(number);
    }
};

} // namespace

Double roundHalfEven(Double number)
{
    const Double floor = std::floor(number);
    const Double rest = number - floor;
    if (rest != 0.5)
        return std::round(number);
    return std::fmod(floor, 2) == 0 ? floor : floor + 1;
}

bool CBool(const Value& value)
{
    if (const auto* text = value.as<String>())
        if (const auto truth = truthWord(*text))
            return *truth;
    return CDbl(value) != 0;
}

Byte CByte(const Value& value) { return toWhole<Byte>(value); }
Integer CInt(const Value& value) { return toWhole<Integer>(value); }
Long CLng(const Value& value) { return toWhole<Long>(value); }

Single CSng(const Value& value)
{
    const Double number = CDbl(value);
    if (std::abs(number) > static_cast<Double>(std::numeric_limits<Single>::max()))
        fail(failure::overflow);
    return static_cast<Single>(number);
}

Double CDbl(const Value& value) { return std::visit(ToNumber{}, value.data()); }

Currency CCur(const Value& value)
{
    if (const auto* amount = value.as<Currency>())
        return *amount;
    // Whole and fraction apart: scaled by 10,000, a large amount would exceed the precision of a Double.
    constexpr Double mostUnits = 922337203685477;
    constexpr Double mostPart = 5807;
    const Double number = CDbl(value);
    const Double units = std::trunc(number);
    const Double part = roundHalfEven((number - units) * 10000);
    if (!(std::abs(units) <= mostUnits) || (std::abs(units) == mostUnits && std::abs(part) > mostPart))
        fail(failure::overflow);
    return {static_cast<std::int64_t>(units) * 10000 + static_cast<std::int64_t>(part)};
}

String CStr(const Value& value) { return std::visit(ToText{region().decimalMark}, value.data()); }

String CStr(Value&& value)
{
    if (value.as<String>() == nullptr)
        return CStr(std::as_const(value));
    return std::get<String>(std::move(value).data());
}

ObjectPtr CObj(const Value& value)
{
    const auto* object = value.as<ObjectPtr>();
    if (object != nullptr && *object)
        return *object;
    fail(object != nullptr || value.isEmpty() ? failure::noObject : failure::typeMismatch);
}

template <>
LongArray valueTo(const Value& value)
{
    const auto* array = value.as<LongArray>();
    if (array == nullptr || !*array)
        fail(failure::typeMismatch);
    return *array;
}

String Str(const Value& number)
{
    if (number.isEmpty() || number.as<bool>() != nullptr || number.as<String>() != nullptr)
        return Str(Value(CDbl(number)));
    String text = std::visit(ToText{u'.'}, number.data());
    return text.starts_with(u'-') ? text : u" " + text;
}

Double Val(StringView text)
{
    NumberReader reader(text, {u'.', u' '});
    return reader.read() ? inRange(reader.value()) : 0;
}

bool IsNumeric(const Value& value)
{
    if (const auto* text = value.as<String>())
        return std::isfinite(parsed(*text).value_or(std::numeric_limits<Double>::infinity()));
    return !value.isNull() && value.as<ObjectPtr>() == nullptr && value.as<LongArray>() == nullptr;
}

bool isTrue(const Value& value) { return !value.isNull() && CBool(value); }

String operator+(String left, const Value& right)
{
    return right.isNull() ? std::move(left) : std::move(left) + CStr(right);
}

String decimalText(Currency amount) { return fromUtf8(currencyText(amount)); }

String decimalText(std::int64_t number)
{
    const std::string text = std::to_string(number);
    return {text.begin(), text.end()};
}

String Left(StringView text, long length)
{
    if (length < 0)
        fail(failure::invalidCall);
    return String(text.substr(0, static_cast<std::size_t>(length)));
}

String Right(StringView text, long length)
{
    if (length < 0)
        fail(failure::invalidCall);
    const auto wanted = std::min(static_cast<std::size_t>(length), text.size());
    return String(text.substr(text.size() - wanted));
}

} // namespace zv
