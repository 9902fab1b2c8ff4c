#include "data/Schema.h"

#include "data/Statement.h"
#include "runtime/Convert.h"

namespace zv::schema {
namespace {

/// An engine's spelling of the DDL; a member for each thing that engines write differently.
struct Spelling {
    StringView text, decimal;
    StringView length;        ///< Function that counts a text's characters.
    StringView automaticKey;  ///< Suffix of the type of a generated key.
    StringView ownKeyOptions; ///< Suffix of the columns of a table whose rows bring their key.
    StringView otherOptions;  ///< Suffix of those of any other table.
    StringView once = {};     ///< Prologue, before all tables.
    /// Epilogue of a table with a generated key; pattern of its name, its key, and its key.
    StringView automatic = {};
    StringView boundedText = {}; ///< Pattern of a text's type, if bounded; of its width and one: one letter
                                 ///< more, since what is too long by blanks alone is cut without a failure.
    StringView indexedPart = {}; ///< Suffix of an unbounded text in an index.
    StringView indexQuery = {};
    bool checksGeneratedKeys = true;
};

/// Trigger that generates a key as the largest plus one: a sequence would sooner or later give one that a row
/// brought.
constexpr StringView nextKey =
    u"CREATE FUNCTION zv_clave() RETURNS trigger LANGUAGE plpgsql AS 'DECLARE clave integer; BEGIN "
    u"EXECUTE format(''SELECT COALESCE(MAX(%1$I),0)+1 FROM %2$I.%3$I'', TG_ARGV[0], TG_TABLE_SCHEMA, "
    u"TG_TABLE_NAME) INTO clave; RETURN jsonb_populate_record(NEW, jsonb_build_object(TG_ARGV[0], clave)); "
    u"END'";

const Spelling& spelling(DdlStyle style)
{
    static constexpr Spelling sqlite{.text = u"TEXT",
                                     .decimal = u"REAL",
                                     .length = u"length",
                                     .automaticKey = u" PRIMARY KEY",
                                     .ownKeyOptions = u" STRICT, WITHOUT ROWID",
                                     .otherOptions = u" STRICT",
                                     .indexQuery =
                                         u"SELECT t.name, c.name FROM sqlite_schema t JOIN "
                                         u"pragma_index_list(t.name) i JOIN pragma_index_info(i.name) c "
                                         u"WHERE t.type='table' AND c.seqno=0 AND c.name IS NOT NULL"};
    static constexpr Spelling postgresql{
        .text = u"TEXT",
        .decimal = u"DOUBLE PRECISION",
        .length = u"length",
        .automaticKey = u" PRIMARY KEY",
        .ownKeyOptions = u"",
        .otherOptions = u"",
        .once = nextKey,
        .automatic = u"CREATE TRIGGER zv_clave BEFORE INSERT ON {} FOR EACH ROW "
                     u"WHEN (NEW.{} IS NULL) EXECUTE FUNCTION zv_clave('{}')",
        .indexQuery = u"SELECT t.relname, a.attname FROM pg_index i JOIN pg_class t "
                      u"ON t.oid=i.indrelid JOIN pg_namespace n ON n.oid=t.relnamespace "
                      u"JOIN pg_attribute a ON a.attrelid=t.oid AND "
                      u"a.attnum=i.indkey[0] WHERE n.nspname=current_schema()"};
    static constexpr Spelling mariadb{
        .text = u"LONGTEXT",
        .decimal = u"DOUBLE",
        .length = u"char_length",
        .automaticKey = u" AUTO_INCREMENT PRIMARY KEY",
        .ownKeyOptions = u" ENGINE=InnoDB",
        .otherOptions = u" ENGINE=InnoDB",
        .boundedText = u"VARCHAR({})",
        .indexedPart = u"(100)",
        .indexQuery = u"SELECT table_name, column_name FROM information_schema.statistics "
                      u"WHERE table_schema=DATABASE() AND seq_in_index=1 AND "
                      u"column_name IS NOT NULL",
        .checksGeneratedKeys = false};
    switch (style) {
    case DdlStyle::postgresql:
        return postgresql;
    case DdlStyle::mariadb:
        return mariadb;
    case DdlStyle::sqlite:
        break;
    }
    return sqlite;
}

String typeName(const Column& column, const Spelling& as)
{
    switch (column.type) {
    case Type::text:
        return column.width > 0 && !as.boundedText.empty()
                   ? statement(as.boundedText, {Long{column.width + 1}})
                   : String(as.text);
    case Type::decimal:
        return String(as.decimal);
    default:
        return u"INTEGER";
    }
}

/// CHECK constraint of a range, named so that the engine's message tells a person what is wrong.
String range(StringView column, StringView least, StringView most)
{
    return statement(u", CONSTRAINT \"{}: de {} a {}\" CHECK ({} BETWEEN {} AND {})",
                     {column, least, most, column, least, most});
}

String limits(const Column& column, const Spelling& as)
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
            return statement(u", CONSTRAINT \"{}: como mucho {} caracteres\" CHECK ({}({})<={})",
                             {column.name, Long{column.width}, as.length, column.name, Long{column.width}});
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

} // namespace

String definition(const Table& table, DdlStyle style)
{
    const Spelling& as = spelling(style);
    String columns;
    String checks;
    for (std::size_t i = 0; i < table.count; ++i) {
        const Column& column = table.columns()[i];
        columns += (i == 0 ? u"" : u", ") + String(column.name) + u" " + typeName(column, as);
        if (i < table.keyColumns && table.key == Key::given)
            columns += u" NOT NULL";
        const bool generated = i == 0 && table.key == Key::automatic;
        if (generated)
            columns += as.automaticKey;
        if (!generated || as.checksGeneratedKeys)
            checks += limits(column, as);
    }
    columns += checks;
    if (table.key == Key::given)
        columns += u", PRIMARY KEY (" + joinedNames(keyOf(table)) + u")";
    return statement(u"CREATE TABLE {} ({}){}",
                     {table.name, columns, table.key == Key::given ? as.ownKeyOptions : as.otherOptions});
}

std::vector<Index> indexes(const Table& table, DdlStyle style)
{
    std::vector<Index> result;
    const auto add = [&](std::span<const Column> columns) {
        const bool unbounded = columns.front().type == Type::text && columns.front().width == 0;
        result.push_back({columns.front().name,
                          statement(u"CREATE INDEX ix_{}_{} ON {} ({}{})",
                                    {table.name, columns.front().name, table.name, joinedNames(columns),
                                     unbounded ? spelling(style).indexedPart : u""})});
    };
    if (table.key == Key::repeated)
        add(keyOf(table));
    for (const Column& column : table.columns().subspan(1))
        if (column.searched || !column.refersTo.empty())
            add({&column, 1});
    return result;
}

StringView indexQuery(DdlStyle style) { return spelling(style).indexQuery; }

std::vector<String> definition(Database which, DdlStyle style)
{
    const Spelling& as = spelling(style);
    std::vector<String> result;
    if (!as.once.empty())
        result.emplace_back(as.once);
    for (const Table& each : tables(which)) {
        result.push_back(definition(each, style));
        if (each.key == Key::automatic && !as.automatic.empty()) {
            const String key = lowerName(each.columns().front().name);
            result.push_back(statement(as.automatic, {each.name, key, key}));
        }
        // No indexes for deleted records, of which only the largest key is asked for.
        if (which != Database::borrado)
            for (Index& index : indexes(each, style))
                result.push_back(std::move(index.definition));
    }
    return result;
}

} // namespace zv::schema
