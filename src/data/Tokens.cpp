#include "data/Tokens.h"

#include <array>

namespace zv {
namespace {

constexpr bool isDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

/// What an ASCII unit may be part of.
struct Units {
    std::array<bool, 0x80> name{};
    std::array<bool, 0x80> blank{};
};
constexpr Units units = [] {
    Units result;
    for (const char16_t each :
         StringView(u"0123456789_$@#abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"))
        result.name[each] = true;
    for (const char16_t each : StringView(u" \t\r\n\f"))
        result.blank[each] = true;
    return result;
}();
bool isNameUnit(char16_t unit) { return unit >= 0x80 || units.name[unit]; }
bool isBlank(char16_t unit) { return unit < 0x80 && units.blank[unit]; }

} // namespace

Token Tokens::next()
{
    skip();
    const std::size_t start = place_;
    const Token::Kind kind = start < text_.size() ? take(text_[start]) : Token::Kind::end;
    return {kind, start, place_ - start};
}

void Tokens::passTo(StringView end, std::size_t from)
{
    const std::size_t found = text_.find(end, from);
    place_ = found == StringView::npos ? text_.size() : found + end.size();
}

void Tokens::skip()
{
    for (;;) {
        if (place_ < text_.size() && isBlank(text_[place_]))
            ++place_;
        else if (at(place_) == u'-' && at(place_ + 1) == u'-')
            passTo(u"\n", place_);
        else if (at(place_) == u'/' && at(place_ + 1) == u'*')
            passTo(u"*/", place_ + 2);
        else
            return;
    }
}

Token::Kind Tokens::take(char16_t first)
{
    if (first == u'\'' || first == u'"' || first == u'`') {
        passQuoted(first);
        return first == u'\'' ? Token::Kind::text : Token::Kind::name;
    }
    if (first == u'[') {
        passTo(u"]", place_);
        return Token::Kind::name;
    }
    if (isDigit(first) || (first == u'.' && isDigit(at(place_ + 1)))) {
        number();
        return Token::Kind::number;
    }
    if (!isNameUnit(first)) {
        ++place_;
        return Token::Kind::symbol;
    }
    while (isNameUnit(at(place_)))
        ++place_;
    return Token::Kind::name;
}

/// Skips a quoted token; a doubled quote is an escape.
void Tokens::passQuoted(char16_t quote)
{
    do {
        passTo(StringView(&quote, 1), place_ + 1);
    } while (at(place_) == quote);
}

void Tokens::number()
{
    while (isNameUnit(at(place_)) || at(place_) == u'.') {
        const bool exponent = (at(place_) | 0x20) == u'e';
        ++place_;
        // Look-ahead: in 1e-- a comment begins, no exponent.
        if (exponent && (at(place_) == u'+' || at(place_) == u'-') && isDigit(at(place_ + 1)))
            ++place_;
    }
}

String unquotedName(StringView name)
{
    const bool quotes = name.size() > 1 && StringView(u"\"[`").find(name.front()) != StringView::npos;
    return String(quotes ? name.substr(1, name.size() - 2) : name);
}

String quotedName(StringView name) { return u'"' + Replace(name, u"\"", u"\"\"") + u'"'; }

} // namespace zv
