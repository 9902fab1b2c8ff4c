#include "data/history/Fields.h"

#include "data/DataError.h"
#include "data/Statement.h"
#include "data/Tokens.h"
#include "runtime/Convert.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <functional>

namespace zv::history {
namespace {

/// Parser of a clause; each step fails where the text is no such clause.
class Reader {
public:
    explicit Reader(StringView text) : text_(text), tokens_(text) { advance(); }

    Fields read()
    {
        Fields result;
        while (token_.kind != Token::Kind::end) {
            if (!result.empty())
                take(u",");
            if (token_.kind != Token::Kind::name)
                refuse();
            String column(word());
            advance();
            take(u"=");
            result.push_back({std::move(column), value()});
        }
        return result;
    }

private:
    StringView word() const { return text_.substr(token_.start, token_.length); }
    void advance() { token_ = tokens_.next(); }
    [[noreturn]] void refuse() const
    {
        throw DataError(failure::badStatement, "", u"no son los campos de una fila", text_);
    }
    void take(StringView symbol)
    {
        if (word() != symbol)
            refuse();
        advance();
    }
    Value value()
    {
        const bool negative = word() == u"-";
        if (negative)
            advance();
        const StringView found = word();
        const Token::Kind kind = token_.kind;
        advance();
        if (kind == Token::Kind::number)
            return number(toUtf8(found), negative);
        if (kind == Token::Kind::text && !negative && found.size() > 1 && found.back() == u'\'')
            return Replace(found.substr(1, found.size() - 2), u"''", u"'");
        if (sameName(found, u"NULL") && !negative)
            return Null();
        refuse();
    }
    Value number(const std::string& digits, bool negative) const
    {
        const std::string text = (negative ? "-" : "") + digits;
        const char* const end = text.data() + text.size();
        Long whole = 0;
        if (const auto read = std::from_chars(text.data(), end, whole);
            read.ec == std::errc() && read.ptr == end)
            return whole;
        Double decimal = 0;
        const auto read = std::from_chars(text.data(), end, decimal);
        if (read.ec == std::errc() && read.ptr == end)
            return decimal;
        if (digits == "9e999") // As an infinite value is written.
            return negative ? -HUGE_VAL : HUGE_VAL;
        refuse();
    }

    StringView text_;
    Tokens tokens_;
    Token token_;
};

bool isNumber(const Value& value)
{
    return !value.isEmpty() && !value.isNull() && value.as<String>() == nullptr &&
           value.as<ObjectPtr>() == nullptr;
}

String joined(const Fields& fields, StringView between, const std::function<String(const Field&)>& shown)
{
    String result;
    for (const Field& each : fields) {
        if (!result.empty())
            result += between;
        result += shown(each);
    }
    return result;
}

} // namespace

String textOf(const Fields& fields)
{
    return joined(fields, u",", [](const Field& each) { return each.column + u"=" + literal(each.value); });
}

Fields fieldsIn(StringView text) { return Reader(text).read(); }

String conditionOf(const Fields& fields)
{
    return joined(fields, u" AND ", [](const Field& each) {
        return each.value.isNull() ? each.column + u" IS NULL" : each.column + u"=" + literal(each.value);
    });
}

const Value* valueOf(const Fields& fields, StringView column)
{
    const auto found =
        std::ranges::find_if(fields, [&](const Field& each) { return sameName(each.column, column); });
    return found == fields.end() ? nullptr : &found->value;
}

bool same(const Value& one, const Value& other)
{
    if (isNumber(one) && isNumber(other))
        return literal(one) == literal(other);
    return one.data() == other.data();
}

bool same(const Fields& one, const Fields& other)
{
    return std::ranges::equal(one, other, [](const Field& a, const Field& b) {
        return sameName(a.column, b.column) && same(a.value, b.value);
    });
}

} // namespace zv::history
