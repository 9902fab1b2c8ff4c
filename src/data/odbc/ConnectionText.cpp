#include "data/odbc/ConnectionText.h"

#include "data/Engine.h"
#include "runtime/Convert.h"

#include <algorithm>

namespace zv::odbc {
namespace {

String trimmed(StringView text)
{
    while (!text.empty() && text.front() == u' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == u' ')
        text.remove_suffix(1);
    return String(text);
}

/// Parses and consumes the value at the beginning of the text.
String takeValue(StringView& text)
{
    if (!text.starts_with(u'{')) {
        const std::size_t end = std::min(text.find(u';'), text.size());
        String value = trimmed(text.substr(0, end));
        text.remove_prefix(end);
        return value;
    }
    String value;
    std::size_t place = 1;
    for (; place < text.size(); ++place) {
        if (text[place] == u'}' && (place + 1 == text.size() || text[place + 1] != u'}'))
            break;
        if (text[place] == u'}')
            ++place;
        value += text[place];
    }
    text.remove_prefix(std::min(place + 1, text.size()));
    text.remove_prefix(std::min(text.find(u';'), text.size()));
    return value;
}

String braced(StringView value)
{
    if (value.find_first_of(u";{}[](),?*=!@ ") == StringView::npos)
        return String(value);
    return u"{" + Replace(value, u"}", u"}}") + u"}";
}

auto called(StringView name)
{
    return [name](const auto& each) { return sameName(each.name, name); };
}

} // namespace

ConnectionText::ConnectionText(StringView text)
{
    while (!text.empty()) {
        const std::size_t sign = text.find_first_of(u"=;");
        String name = trimmed(text.substr(0, sign));
        text.remove_prefix(std::min(sign, text.size()));
        String value;
        if (text.starts_with(u'=')) {
            text.remove_prefix(1);
            value = takeValue(text);
        }
        if (!name.empty())
            attributes_.push_back({std::move(name), std::move(value)});
        if (!text.empty())
            text.remove_prefix(1);
    }
}

std::optional<String> ConnectionText::find(StringView name) const
{
    const auto found = std::ranges::find_if(attributes_, called(name));
    return found == attributes_.end() ? std::nullopt : std::optional(found->value);
}

void ConnectionText::set(StringView name, String value)
{
    const auto found = std::ranges::find_if(attributes_, called(name));
    if (found == attributes_.end())
        attributes_.push_back({String(name), std::move(value)});
    else
        found->value = std::move(value);
}

std::optional<String> ConnectionText::take(StringView name)
{
    auto value = find(name);
    std::erase_if(attributes_, called(name));
    return value;
}

String ConnectionText::text() const
{
    String result;
    for (const Attribute& each : attributes_)
        result += each.name + u"=" + braced(each.value) + u";";
    return result;
}

String ConnectionText::shown() const { return u"odbc:" + withoutPassword(text()); }

void failFor(const ConnectionText& text, StringView words, std::int32_t number)
{
    throw RuntimeError(number, u"«" + text.shown() + u"» " + String(words));
}

} // namespace zv::odbc
