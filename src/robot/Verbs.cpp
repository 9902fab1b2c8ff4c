#include "robot/Verbs.h"

#include "runtime/Convert.h"

#include <algorithm>
#include <charconv>

namespace zv {

namespace {

bool isKind(const GuionArgument& argument, char16_t kind)
{
    if (kind == u'a')
        return !argument.name.empty();
    if (!argument.name.empty())
        return false;
    if (kind == u't' || argument.quoted)
        return argument.quoted && (kind == u't' || kind == u'e');
    switch (kind) {
    case u'n':
    case u'e':
        return parseNumber(argument.text).has_value();
    case u'c':
        return parseMember(argument.text).has_value();
    default:
        return true;
    }
}

StringView describe(char16_t kind)
{
    switch (kind) {
    case u'n':
        return u"un número entero de 32 bits";
    case u't':
        return u"un texto entre comillas";
    case u'c':
        return u"el nombre de un control, con su índice entre paréntesis si lo tiene";
    case u'e':
        return u"un número entero o un texto entre comillas";
    case u'p':
        return u"CONTROL.PROPIEDAD, sin comillas";
    case u'a':
        return u"MIEMBRO=valor";
    default:
        return u"una palabra sin comillas";
    }
}

/// A signature expanded to the given number of arguments, and whether that number is allowed.
struct Signature {
    explicit Signature(StringView pattern)
        : least(pattern.find_first_of(u"?+")), repeats(pattern.ends_with(u'+'))
    {
        for (const char16_t kind : pattern)
            if (kind != u'?' && kind != u'+')
                kinds += kind;
        least = std::min(least, kinds.size());
    }
    bool takes(std::size_t count) const { return count >= least && (repeats || count <= kinds.size()); }
    char16_t kind(std::size_t position) const { return kinds[std::min(position, kinds.size() - 1)]; }

    std::size_t least;
    bool repeats;
    String kinds;
};

} // namespace

const Verb* findVerb(StringView name)
{
    for (const auto& verbs : {settingUpVerbs(), callingVerbs(), actingVerbs(), lookingVerbs()})
        for (const Verb& verb : verbs)
            if (sameName(verb.name, name))
                return &verb;
    return nullptr;
}

void checkCommand(const GuionCommand& command)
{
    const Verb* verb = findVerb(command.verb);
    if (verb == nullptr)
        throw GuionError(command.line, u"no hay ninguna orden que se llame " + String(cut(command.verb, 40)));
    const Signature signature(verb->arguments);
    const std::size_t count = command.arguments.size();
    if (!signature.takes(count))
        throw GuionError(command.line,
                         (count < signature.least ? u"faltan argumentos a " : u"sobran argumentos a ") +
                             String(verb->name));
    for (std::size_t i = 0; i < count; ++i)
        if (!isKind(command.arguments[i], signature.kind(i)))
            throw GuionError(command.line, u"el argumento " + decimalText(static_cast<Long>(i + 1)) +
                                               u" de " + String(verb->name) + u" es " +
                                               String(describe(signature.kind(i))));
}

std::optional<Long> parseNumber(StringView text)
{
    if (text.empty() || !std::ranges::all_of(text, [](char16_t unit) { return unit < 0x80; }))
        return std::nullopt;
    const std::string digits = toUtf8(text);
    Long number = 0;
    const auto [end, failed] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (failed != std::errc() || end != digits.data() + digits.size())
        return std::nullopt;
    return number;
}

std::optional<MemberName> parseMember(StringView text)
{
    const std::size_t open = text.find(u'(');
    MemberName result{String(text.substr(0, open)), {}};
    if (result.name.empty() || result.name.find_first_of(u".,)") != String::npos)
        return std::nullopt;
    if (open == StringView::npos)
        return result;
    if (!text.ends_with(u')'))
        return std::nullopt;
    text = text.substr(open + 1, text.size() - open - 2);
    while (true) {
        const std::size_t comma = text.find(u',');
        const auto index = parseNumber(text.substr(0, comma));
        if (!index)
            return std::nullopt;
        result.indices.push_back(*index);
        if (comma == StringView::npos)
            return result;
        text.remove_prefix(comma + 1);
    }
}

Long numberIn(const GuionArgument& argument) { return parseNumber(argument.text).value(); }

} // namespace zv
