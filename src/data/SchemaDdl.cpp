#include "data/Schema.h"

#include "runtime/Convert.h"

namespace zv::schema {
namespace {

/// How an engine writes what the tables say. It has a member for each thing that engines write differently.
struct Spelling {
    StringView wholeNumber, text, decimal;
    StringView automaticKey;  ///< Behind the type of a key that the database gives.
    StringView ownKeyOptions; ///< Behind the columns of a table whose rows bring their key.
    StringView otherOptions;  ///< Behind those of any other table.
};

const Spelling& spelling(DdlStyle style)
{
    static constexpr Spelling sqlite{.wholeNumber = u"INTEGER",
                                     .text = u"TEXT",
                                     .decimal = u"REAL",
                                     .automaticKey = u" PRIMARY KEY",
                                     .ownKeyOptions = u" STRICT, WITHOUT ROWID",
                                     .otherOptions = u" STRICT"};
    switch (style) {
    case DdlStyle::sqlite:
        break;
    }
    return sqlite;
}

StringView typeName(Type type, const Spelling& as)
{
    switch (type) {
    case Type::text:
        return as.text;
    case Type::decimal:
        return as.decimal;
    default:
        return as.wholeNumber;
    }
}

/// A range has a name that tells a person what is wrong when the engine repeats it in a failure.
String range(StringView column, StringView least, StringView most)
{
    return statement(u" CONSTRAINT \"{}: de {} a {}\" CHECK ({} BETWEEN {} AND {})",
                     {column, least, most, column, least, most});
}

String limits(const Column& column)
{
    switch (column.type) {
    case Type::integer:
        return range(column.name, u"-32768", u"32767");
    case Type::longInteger:
        return range(column.name, u"-2147483648", u"2147483647");
    case Type::byte:
        return range(column.name, u"0", u"255");
    case Type::text:
        if (column.width > 0)
            return statement(u" CONSTRAINT \"{}: como mucho {} caracteres\" CHECK (length({})<={})",
                             {column.name, Long{column.width}, column.name, Long{column.width}});
        break;
    case Type::flag:
    case Type::decimal:
        break;
    }
    return {};
}

String joinedNames(std::span<const Column> columns)
{
    String result;
    for (const Column& column : columns)
        result += (result.empty() ? u"" : u", ") + String(column.name);
    return result;
}

std::span<const Column> keyOf(const Table& table) { return table.columns().first(table.keyColumns); }

String tableDefinition(const Table& table, const Spelling& as)
{
    String columns;
    for (std::size_t i = 0; i < table.count; ++i) {
        const Column& column = table.columns()[i];
        columns += (i == 0 ? u"" : u", ") + String(column.name) + u" " + String(typeName(column.type, as));
        if (i < table.keyColumns && table.key == Key::given)
            columns += u" NOT NULL";
        if (i == 0 && table.key == Key::automatic)
            columns += as.automaticKey;
        columns += limits(column);
    }
    if (table.key == Key::given)
        columns += u", PRIMARY KEY (" + joinedNames(keyOf(table)) + u")";
    return statement(u"CREATE TABLE {} ({}){}",
                     {table.name, columns, table.key == Key::given ? as.ownKeyOptions : as.otherOptions});
}

void addIndexes(std::vector<String>& statements, const Table& table)
{
    const auto add = [&](std::span<const Column> columns) {
        statements.push_back(statement(u"CREATE INDEX ix_{}_{} ON {} ({})",
                                       {table.name, columns.front().name, table.name, joinedNames(columns)}));
    };
    if (table.key == Key::repeated)
        add(keyOf(table));
    for (const Column& column : table.columns().subspan(1))
        if (column.searched || !column.refersTo.empty())
            add({&column, 1});
}

} // namespace

std::vector<String> definition(Database which, DdlStyle style)
{
    std::vector<String> result;
    for (const Table& each : tables(which)) {
        result.push_back(tableDefinition(each, spelling(style)));
        // Of deleted records only the largest key is asked for.
        if (which != Database::borrado)
            addIndexes(result, each);
    }
    return result;
}

} // namespace zv::schema
