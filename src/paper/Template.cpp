#include "paper/Template.h"

#include "data/DataError.h"
#include "runtime/Convert.h"

#include <algorithm>

namespace zv::paper {
namespace {

using Scope = std::vector<const Fields*>;

constexpr StringView opening = u"{{";
constexpr StringView closing = u"}}";
constexpr char32_t replacement = 0xFFFD;

bool isSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDFFF; }

bool breaksLine(char32_t character)
{
    return (character >= u'\n' && character <= u'\r') || character == 0x85 || character == 0x2028 ||
           character == 0x2029;
}

void append(String& text, char32_t character)
{
    if (character > 0xFFFF) {
        text += static_cast<char16_t>(0xD7C0 + (character >> 10));
        text += static_cast<char16_t>(0xDC00 + (character & 0x3FF));
    } else
        text += static_cast<char16_t>(character);
}

/// Escaped for HTML. Between tags it keeps its line breaks and blanks.
String escaped(StringView text, bool inTag)
{
    String result = inTag ? u"" : u"<span style=\"white-space:pre-wrap\">";
    char32_t before = 0;
    for (const char32_t each : codePoints(text)) {
        if (breaksLine(each))
            result += each == u'\n' && before == u'\r' ? u"" : inTag ? u" " : u"<br/>";
        else if (each == u'&')
            result += u"&amp;";
        else if (each == u'<')
            result += u"&lt;";
        else if (each == u'>')
            result += u"&gt;";
        else if (each == u'"')
            result += u"&quot;";
        else if (each == u'\'')
            result += u"&#39;";
        else
            append(result, each == u'\t' || isPrintable(each) ? each : replacement);
        before = each;
    }
    return inTag ? result : result + u"</span>";
}

/// From the innermost list outwards; nullptr if nobody has it.
template <class Map>
const typename Map::mapped_type* lookUp(const Scope& scope, StringView name, Map Fields::*fields)
{
    for (auto each = scope.rbegin(); each != scope.rend(); ++each)
        if (const auto found = ((*each)->*fields).find(name); found != ((*each)->*fields).end())
            return &found->second;
    return nullptr;
}

} // namespace

bool isPrintable(char32_t character)
{
    return !(character < 0x20 || (character >= 0x7F && character < 0xA0) || isSurrogate(character) ||
             (character >= 0xFDD0 && character <= 0xFDEF) || character == 0xFFFC ||
             (character & 0xFFFE) == 0xFFFE);
}

std::u32string codePoints(StringView text)
{
    std::u32string result;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char32_t unit = text[at];
        const char32_t next = at + 1 < text.size() ? text[at + 1] : 0;
        if (unit >= 0xD800 && unit < 0xDC00 && next >= 0xDC00 && next < 0xE000) {
            result += static_cast<char32_t>(0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00));
            ++at;
        } else
            result += unit;
    }
    return result;
}

/// Recursive descent over the page; it knows the line for messages.
struct Template::Parser {
    const String& file;
    StringView page;
    std::size_t at = 0;
    bool inTag = false;

    [[noreturn]] void fail(const String& what) const
    {
        const auto line = std::ranges::count(page.substr(0, at), u'\n') + 1;
        throw RuntimeError(failure::otherData,
                           u"La plantilla " + file + u" está mal, línea " + decimalText(line) + u": " + what);
    }

    void words(std::vector<Node>& into, StringView text)
    {
        if (text.empty())
            return;
        if (const std::size_t last = text.find_last_of(u"<>"); last != StringView::npos)
            inTag = text[last] == u'<';
        into.push_back({Node::Is::words, String(text)});
    }

    const FieldName& named(StringView name, const std::vector<std::span<const FieldName>>& scope) const
    {
        String all;
        for (auto names = scope.rbegin(); names != scope.rend(); ++names)
            for (const FieldName& each : *names) {
                if (each.name == name)
                    return each;
                all += (all.empty() ? u"" : u", ") + String(each.name);
            }
        fail(u"no hay ningún campo «" + String(name) + u"» aquí. Los que hay: " + all + u".");
    }

    void part(std::vector<Node>& into, StringView name, bool unless,
              std::vector<std::span<const FieldName>>& scope)
    {
        const FieldName& field = named(name, scope);
        const std::size_t begun = at;
        Node node{unless ? Node::Is::unless : Node::Is::part, String(name)};
        at = page.find(closing, at) + closing.size();
        const bool enters = !unless && !field.inner.empty();
        if (enters)
            scope.push_back(field.inner);
        if (!parse(node.inner, name, scope)) {
            at = begun;
            fail(u"la parte «" + node.text + u"» no se cierra: falta {{/" + node.text + u"}}.");
        }
        if (enters)
            scope.pop_back();
        into.push_back(std::move(node));
    }

    /// Reads up to the end of the part, or to that of the page. False if the part is not closed.
    bool parse(std::vector<Node>& into, StringView within, std::vector<std::span<const FieldName>>& scope)
    {
        for (;;) {
            const std::size_t begin = page.find(opening, at);
            words(into, page.substr(at, begin == StringView::npos ? begin : begin - at));
            if (begin == StringView::npos)
                return within.empty();
            at = begin;
            const std::size_t end = page.find(closing, at);
            if (end == StringView::npos)
                fail(u"el campo que empieza con {{ no se cierra con }}.");
            StringView name = page.substr(begin + opening.size(), end - begin - opening.size());
            const char16_t mark = name.empty() ? u' ' : name.front();
            if (mark == u'#' || mark == u'^' || mark == u'/')
                name.remove_prefix(1);
            if (mark == u'#' || mark == u'^') {
                part(into, name, mark == u'^', scope);
                continue;
            }
            if (mark == u'/')
                checkEnd(name, within);
            else
                text(into, name, scope);
            at = end + closing.size();
            if (mark == u'/')
                return true;
        }
    }

    void checkEnd(StringView name, StringView within) const
    {
        if (within.empty() || name != within)
            fail(u"aquí no se puede cerrar «" + String(name) + u"»" +
                 (within.empty() ? u"." : u": está abierta «" + String(within) + u"»."));
    }

    void text(std::vector<Node>& into, StringView name,
              const std::vector<std::span<const FieldName>>& scope) const
    {
        if (!named(name, scope).inner.empty())
            fail(u"«" + String(name) + u"» es una lista: se escribe {{#" + String(name) + u"}}…{{/" +
                 String(name) + u"}}.");
        into.push_back({Node::Is::text, String(name), inTag});
    }
};

/// Recursive walk over the nodes, with the lists that it stands in.
struct Template::Filler {
    String result = {};
    Scope scope;

    void fill(const std::vector<Node>& nodes)
    {
        for (const Node& node : nodes)
            fill(node);
    }

private:
    void fill(const Node& node)
    {
        if (node.is == Node::Is::words) {
            result += node.text;
            return;
        }
        const String* text = lookUp(scope, node.text, &Fields::texts);
        if (node.is == Node::Is::text)
            result += text == nullptr ? String() : escaped(*text, node.inTag);
        else
            fillPart(node, text != nullptr && !text->empty());
    }
    void fillPart(const Node& node, bool hasText)
    {
        const auto* list = lookUp(scope, node.text, &Fields::lists);
        const bool hasList = list != nullptr && !list->empty();
        if (node.is == Node::Is::unless || !hasList) {
            if ((hasText || hasList) == (node.is == Node::Is::part))
                fill(node.inner);
            return;
        }
        for (const Fields& each : *list) {
            scope.push_back(&each);
            fill(node.inner);
            scope.pop_back();
        }
    }
};

Template::Template(const String& file, StringView page, std::span<const FieldName> names)
{
    std::vector<std::span<const FieldName>> scope{names};
    Parser{file, page}.parse(nodes_, {}, scope);
}

String Template::fill(const Fields& fields) const
{
    Filler filler{.scope = {&fields}};
    filler.fill(nodes_);
    return filler.result;
}

} // namespace zv::paper
