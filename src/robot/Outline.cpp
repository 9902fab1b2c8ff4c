#include "robot/Outline.h"

#include <algorithm>

namespace zv {

namespace {

constexpr StringView blanks = u" \t\r\n\f";

bool isDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }
bool isNameUnit(char16_t unit)
{
    return unit >= 0x80 || isDigit(unit) || (unit >= u'a' && unit <= u'z') ||
           (unit >= u'A' && unit <= u'Z') || StringView(u"_$@#").find(unit) != StringView::npos;
}

std::size_t behind(StringView text, StringView end, std::size_t from)
{
    const std::size_t found = text.find(end, from);
    return found == StringView::npos ? text.size() : found + end.size();
}

/// End of a quoted piece; a doubled `sign` is an escape and does not end it.
std::size_t behindQuoted(StringView text, char16_t sign)
{
    std::size_t at = 1;
    while ((at = behind(text, {&sign, 1}, at)) < text.size() && text[at] == sign)
        ++at;
    return at;
}

/// Token length of the comment or the quoted piece at the beginning of the text, else 0.
std::size_t pieceLength(StringView text)
{
    if (text.starts_with(u"--"))
        return behind(text, u"\n", 2);
    if (text.starts_with(u"/*"))
        return behind(text, u"*/", 2);
    if (text.front() == u'[')
        return behind(text, u"]", 1);
    const bool opens = StringView(u"'\"`").find(text.front()) != StringView::npos;
    return opens ? behindQuoted(text, text.front()) : 0;
}

/// Token length of the number or identifier at the beginning of the text, else 0.
std::size_t wordLength(StringView text)
{
    const auto* const end = std::ranges::find_if_not(text, isNameUnit);
    return static_cast<std::size_t>(end - text.begin());
}

} // namespace

Outline::Outline(StringView statement)
{
    bool ended = false;
    while (!statement.empty()) {
        const char16_t first = statement.front();
        const bool comment = statement.starts_with(u"--") || statement.starts_with(u"/*");
        std::size_t length = pieceLength(statement);
        if (first == u'\'') {
            literals.emplace_back(statement.substr(0, length));
            skeleton += u'?';
        } else if (length > 0) {
            kept.emplace_back(statement.substr(0, length));
            skeleton += statement.substr(0, length);
        } else {
            length = std::max<std::size_t>(wordLength(statement), 1);
            skeleton += isDigit(first) ? StringView(u"#") : statement.substr(0, length);
        }
        second |= ended && !comment && first != u';' && blanks.find(first) == StringView::npos;
        ended |= first == u';';
        statement.remove_prefix(length);
    }
}

bool Outline::names(StringView name) const
{
    return lowerName(skeleton).find(lowerName(name)) != String::npos;
}

} // namespace zv
