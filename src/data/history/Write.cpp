#include "data/history/Write.h"

#include "data/DataError.h"
#include "data/Tokens.h"

#include <algorithm>

namespace zv::history {
namespace {

/// The tokens of a statement, read one after another; past the last there is an empty one.
class Words {
public:
    explicit Words(StringView text) : text_(text), tokens_(text), token_(tokens_.next()) {}

    StringView word() const { return text_.substr(token_.start, token_.length); }
    const Token& token() const { return token_; }
    bool atEnd() const { return token_.kind == Token::Kind::end; }
    void advance() { token_ = tokens_.next(); }
    bool take(StringView expected)
    {
        if (!sameName(word(), expected))
            return false;
        advance();
        return true;
    }
    String takeTable()
    {
        // Optional schema in front of the table.
        String name;
        do {
            name = unquotedName(word());
            advance();
        } while (take(u"."));
        return name;
    }
    /// The text from here to the end, without a final semicolon.
    String rest() const
    {
        StringView text = text_.substr(std::min(token_.start, text_.size()));
        while (!text.empty() && StringView(u"; \t\r\n").find(text.back()) != StringView::npos)
            text.remove_suffix(1);
        return String(text);
    }
    /// The text from `start` to here.
    StringView since(std::size_t start) const { return text_.substr(start, token_.start - start); }

private:
    StringView text_;
    Tokens tokens_;
    Token token_;
};

/// Takes an expression, up to a comma, a word or a parenthesis that ends it; nullopt if it is no literal.
std::optional<Value> takeLiteral(Words& words, std::initializer_list<StringView> ends)
{
    const std::size_t start = words.token().start;
    std::size_t depth = 0;
    while (!words.atEnd()) {
        const StringView word = words.word();
        if (depth == 0 && (word == u"," || word == u")" || word == u";" ||
                           std::ranges::any_of(ends, [&](StringView each) { return sameName(word, each); })))
            break;
        depth += word == u"(" ? 1 : 0;
        depth -= word == u")" ? 1 : 0;
        words.advance();
    }
    try {
        const Fields one = fieldsIn(u"v=" + String(words.since(start)));
        return one.size() == 1 ? std::optional(one.front().value) : std::nullopt;
    } catch (const DataError&) {
        return std::nullopt;
    }
}

/// Takes "(a, b)": names or, with `literals`, values; nullopt if it is no such list.
std::optional<Fields> takeList(Words& words, bool literals)
{
    Fields result;
    if (!words.take(u"("))
        return std::nullopt;
    do {
        if (literals) {
            const auto value = takeLiteral(words, {});
            if (!value)
                return std::nullopt;
            result.push_back({{}, *value});
        } else {
            result.push_back({unquotedName(words.word()), {}});
            words.advance();
        }
    } while (words.take(u","));
    return words.take(u")") ? std::optional(result) : std::nullopt;
}

bool ends(Words& words)
{
    while (words.take(u";")) {
    }
    return words.atEnd();
}

std::optional<Write> insertOf(Words& words)
{
    Write result{.kind = Write::Kind::insert, .table = {}, .where = {}, .values = {}};
    words.take(u"into");
    result.table = words.takeTable();
    std::optional<Fields> names;
    if (words.word() == u"(") {
        names = takeList(words, false);
        if (!names)
            return std::nullopt;
    }
    if (!words.take(u"values"))
        return std::nullopt;
    std::optional<Fields> values = takeList(words, true);
    if (!values || !ends(words) || (names && names->size() != values->size()))
        return std::nullopt;
    result.values = std::move(*values);
    if (names)
        for (std::size_t i = 0; i < names->size(); ++i)
            result.values[i].column = (*names)[i].column;
    return result;
}

/// Takes what follows the table or its values; false where it is more than a condition.
bool takeCondition(Words& words, Write& into)
{
    if (words.take(u"where")) {
        into.where = words.rest();
        while (!words.atEnd() && words.word() != u";" && !sameName(words.word(), u"returning"))
            words.advance();
    }
    return ends(words);
}

std::optional<Write> updateOf(Words& words)
{
    Write result{.kind = Write::Kind::update, .table = words.takeTable(), .where = {}, .values = {}};
    if (!words.take(u"set"))
        return std::nullopt;
    bool literals = true;
    do {
        String column = unquotedName(words.word());
        words.advance();
        if (!words.take(u"="))
            return std::nullopt;
        const auto value = takeLiteral(words, {u"where", u"from"});
        literals &= value.has_value();
        result.values.push_back({std::move(column), value.value_or(Value())});
    } while (words.take(u","));
    if (!literals)
        result.values.clear();
    return takeCondition(words, result) ? std::optional(result) : std::nullopt;
}

std::optional<Write> removalOf(Words& words)
{
    words.take(u"*");
    if (!words.take(u"from"))
        return std::nullopt;
    Write result{.kind = Write::Kind::remove, .table = words.takeTable(), .where = {}, .values = {}};
    return takeCondition(words, result) ? std::optional(result) : std::nullopt;
}

} // namespace

std::optional<Write> writeOf(StringView statement)
{
    Words words(statement);
    if (words.take(u"insert"))
        return insertOf(words);
    if (words.take(u"update"))
        return updateOf(words);
    if (words.take(u"delete"))
        return removalOf(words);
    return std::nullopt;
}

String writtenTable(StringView statement)
{
    Words words(statement);
    if (!words.take(u"insert") && !words.take(u"update") && !words.take(u"delete"))
        return {};
    words.take(u"*");
    if (!words.take(u"into"))
        words.take(u"from");
    return words.takeTable();
}

bool names(StringView statement, StringView name)
{
    for (Words words(statement); !words.atEnd(); words.advance())
        if (words.token().kind == Token::Kind::name && sameName(unquotedName(words.word()), name))
            return true;
    return false;
}

bool readsTexts(StringView query, StringView table)
{
    Words words(query);
    if (!words.take(u"select"))
        return false;
    // Columns by which no text comes out: those inside an aggregate.
    bool texts = false;
    bool inside = false;
    for (; !words.atEnd() && !sameName(words.word(), u"from"); words.advance()) {
        inside |= words.word() == u"(";
        texts |= !inside && !sameName(words.word(), u"distinct");
        inside &= words.word() != u")";
    }
    return texts && names(words.rest(), table);
}

std::optional<Long> numberAskedFor(StringView query, StringView column)
{
    Words words(query);
    while (!words.atEnd()) {
        if (!words.take(column)) {
            words.advance();
            continue;
        }
        if (!words.take(u"="))
            continue;
        const auto value = takeLiteral(words, {u"and", u"or", u"order"});
        if (const auto* number = value ? value->as<Long>() : nullptr)
            return *number;
    }
    return std::nullopt;
}

} // namespace zv::history
