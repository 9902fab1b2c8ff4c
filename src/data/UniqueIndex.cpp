#include "data/UniqueIndex.h"

#include "data/Schema.h"
#include "data/Tokens.h"

#include <algorithm>

namespace zv {
namespace {

bool holds(const UniqueIndex& index, StringView column)
{
    return std::ranges::any_of(index.columns, [&](const String& each) { return sameName(each, column); });
}

} // namespace

bool holdsKey(const UniqueIndex& index, StringView table, std::span<const String> primaryKey)
{
    const auto held = [&](StringView column) { return holds(index, column); };
    if (const schema::Table* known = schema::table(table))
        return std::ranges::all_of(known->columns().first(known->keyColumns), held, &schema::Column::name);
    return !primaryKey.empty() && std::ranges::all_of(primaryKey, held);
}

bool tellsTakenKey(StringView sqliteWords, StringView statement, bool primary)
{
    constexpr StringView before = u"failed: ";
    const std::size_t place = sqliteWords.find(before);
    if (place == StringView::npos)
        return false;
    // Grammar of the message: «table.column, table.column», or «index 'name'» where it is made of
    // expressions; its ODBC driver appends a number in parentheses.
    StringView rest = sqliteWords.substr(place + before.size());
    const StringView table = rest.substr(0, rest.find(u'.'));
    if (const auto written = writtenTable(statement); written && !sameName(*written, table))
        return false;
    UniqueIndex index;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(u", "), rest.size());
        const StringView column = rest.substr(0, std::min(end, rest.find(u" (")));
        index.columns.emplace_back(column.substr(column.find(u'.') + 1));
        rest.remove_prefix(std::min(end + 2, rest.size()));
    }
    return holdsKey(index, table, primary ? index.columns : std::vector<String>());
}

std::optional<String> writtenTable(StringView statement)
{
    Tokens tokens(statement);
    const auto next = [&] {
        const Token token = tokens.next();
        return statement.substr(token.start, token.length);
    };
    StringView word = next();
    if (!sameName(word, u"insert") && !sameName(word, u"update"))
        return std::nullopt;
    word = next();
    if (sameName(word, u"into"))
        word = next();
    // Optional schema in front of the table.
    StringView table = word;
    while (next() == u".")
        table = next();
    return unquotedName(table);
}

} // namespace zv
