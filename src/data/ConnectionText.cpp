#include "data/ConnectionText.h"

#include "data/Engine.h"
#include "runtime/Convert.h"

#include <algorithm>
#include <iterator>
#include <numeric>

namespace zv {
namespace {

String trimmed(StringView text)
{
    while (!text.empty() && text.front() == u' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == u' ')
        text.remove_suffix(1);
    return String(text);
}

/// Parses and consumes the value at the beginning of the text. `isWhole` becomes false where its braces are
/// not closed, or something stands behind them.
String takeValue(StringView& text, bool& isWhole)
{
    text.remove_prefix(std::min(text.find_first_not_of(u' '), text.size()));
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
    isWhole = place < text.size();
    text.remove_prefix(std::min(place + 1, text.size()));
    const std::size_t end = std::min(text.find(u';'), text.size());
    isWhole = isWhole && trimmed(text.substr(0, end)).empty();
    text.remove_prefix(end);
    return value;
}

String braced(StringView value)
{
    if (value.find_first_of(u";{}[](),?*=!@ ") == StringView::npos)
        return String(value);
    return u"{" + Replace(value, u"}", u"}}") + u"}";
}

/// How many letters are to be put in, taken out or changed.
std::size_t edits(StringView from, StringView to)
{
    std::vector<std::size_t> above(to.size() + 1);
    std::iota(above.begin(), above.end(), 0);
    for (std::size_t row = 1; row <= from.size(); ++row) {
        std::vector<std::size_t> here{row};
        for (std::size_t at = 0; at < to.size(); ++at)
            here.push_back(
                std::min({above[at] + (from[row - 1] != to[at]), above[at + 1] + 1, here[at] + 1}));
        above = std::move(here);
    }
    return above.back();
}

/// Attribute that says which school and where, meant by a name of none; empty where it is a driver's.
StringView meant(StringView name)
{
    constexpr std::size_t slips = 2;
    if (sameName(name, u"SCHEMA"))
        return u"ESQUEMA";
    for (const StringView own : {u"SERVIDORES", u"ESQUEMA", u"ESPERA", u"DATABASE"})
        if (const std::size_t found = edits(lowerName(name), lowerName(own)); found > 0 && found <= slips)
            return own;
    return {};
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
        bool isWhole = true;
        const bool hasSign = text.starts_with(u'=');
        if (hasSign) {
            text.remove_prefix(1);
            value = takeValue(text, isWhole);
        }
        if (!name.empty())
            attributes_.push_back({std::move(name), std::move(value), hasSign, isWhole});
        if (!text.empty())
            text.remove_prefix(1);
    }
}

void ConnectionText::refuseMistakes() const
{
    for (auto each = attributes_.begin(); each != attributes_.end(); ++each) {
        if (!each->hasSign)
            failFor(*this, u"tiene algo sin «=» " + (each == attributes_.begin()
                                                         ? u"al principio: escriba DSN=NOMBRE."
                                                         : u"detrás de " + std::prev(each)->name +
                                                               u": los servidores de SERVIDORES se separan "
                                                               u"con comas, y un valor que lleve «;» va "
                                                               u"entre llaves."));
        if (!each->isWhole)
            failFor(*this,
                    u"no cierra las llaves de " + each->name +
                        u", o tiene algo detrás de ellas: {…} encierran el valor entero, y una «}» suya "
                        u"se escribe dos veces.");
        if (find(each->name) != each->value)
            failFor(*this, u"dice " + each->name + u" dos veces: deje una.");
        if (const StringView own = meant(each->name); !own.empty())
            failFor(*this, u"dice " + each->name + u", que no es nada: escriba " + String(own) + u".");
    }
}

std::optional<String> ConnectionText::find(StringView name) const
{
    const auto found = std::ranges::find_if(attributes_, called(name));
    return found == attributes_.end() ? std::nullopt : std::optional(found->value);
}

std::map<String, String> ConnectionText::values() const
{
    std::map<String, String> result;
    for (const Attribute& each : attributes_)
        result.try_emplace(lowerName(each.name), each.value);
    return result;
}

void ConnectionText::set(StringView name, String value)
{
    const auto found = std::ranges::find_if(attributes_, called(name));
    if (found == attributes_.end()) {
        attributes_.push_back({String(name), std::move(value)});
        return;
    }
    found->value = std::move(value);
    // Drivers differ in which of two counts.
    attributes_.erase(std::remove_if(std::next(found), attributes_.end(), called(name)), attributes_.end());
}

std::optional<String> ConnectionText::take(StringView name)
{
    auto value = find(name);
    std::erase_if(attributes_, called(name));
    return value;
}

String ConnectionText::text(const std::vector<Attribute>& attributes)
{
    String result;
    for (const Attribute& each : attributes)
        result += each.name + u"=" + braced(each.value) + u";";
    return result;
}

String ConnectionText::text() const { return text(attributes_); }

String ConnectionText::shown() const
{
    std::vector<Attribute> whole;
    for (const Attribute& each : attributes_)
        if (each.hasSign)
            whole.push_back(each);
        else if (!whole.empty())
            whole.back().value.clear();
    return u"odbc:" + withoutPassword(text(whole));
}

void failFor(const ConnectionText& text, StringView words, std::int32_t number)
{
    throw RuntimeError(number, u"«" + text.shown() + u"» " + String(words));
}

} // namespace zv
