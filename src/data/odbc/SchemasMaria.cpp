#include "data/DataError.h"
#include "data/Statement.h"
#include "data/Tokens.h"
#include "data/odbc/Failure.h"
#include "data/odbc/Schemas.h"
#include "runtime/Convert.h"

#include <algorithm>

namespace zv::odbc {
namespace {

/// By the binary order of UTF-8 and without padding: texts compare and sort as in the other engines.
constexpr StringView letters = u" CHARACTER SET utf8mb4 COLLATE utf8mb4_nopad_bin";

bool isOneOf(const DataError& failure, std::initializer_list<std::int32_t> numbers)
{
    return std::ranges::find(numbers, ownNumber(failure)) != numbers.end();
}

String placeOf(StringView schema, StringView table) { return quotedName(schema) + u"." + quotedName(table); }

/// A lock has one owner here: the links of a process take one each of these.
String ownersLock(StringView name, int slot)
{
    return textLiteral(String(name) + u":" + decimalText(Long{slot}));
}
constexpr int slots = 8;

/// Joins an expression for each slot.
String overSlots(StringView name, StringView call, StringView join)
{
    String result;
    for (int slot = 1; slot <= slots; ++slot)
        result += (slot == 1 ? String() : String(join)) + statement(call, {ownersLock(name, slot)});
    return result;
}

class MariadbSchemas final : public Schemas {
public:
    bool fits(StringView name) const override
    {
        constexpr std::size_t longest = 64;
        return name.size() <= longest;
    }
    std::vector<StringView> attributes() const override { return {u"DATABASE", u"DB"}; }
    StringView standing() const override
    {
        return u"SELECT COALESCE(DATABASE(),''), @@lower_case_table_names";
    }
    String select(StringView schema) const override { return u"USE " + quotedName(schema); }
    String ownership(StringView name) const override
    {
        return u"SELECT " + overSlots(name, u"GET_LOCK({},0)", u" OR ");
    }
    void create(Pool& pool, StringView name) const override
    {
        pool.run(u"CREATE DATABASE " + quotedName(name) + String(letters));
    }
    void drop(Pool& pool, StringView name) const override
    {
        pool.run(u"DROP DATABASE IF EXISTS " + quotedName(name));
    }
    /// An empty one is as good as none: an administrator may make it for a user who may not.
    std::vector<String> existing(Pool& pool, StringView name) const override
    {
        std::vector<String> result;
        for (const Database which : everyDatabase)
            if (const String each = schemaName(name, which); !tables(pool, each).empty())
                result.push_back(each);
        return result;
    }
    /// Plain equality lets the server open one database alone; names are compared letter by letter besides.
    String columns(StringView schema) const override
    {
        const String name = textLiteral(schema);
        return statement(
            u"SELECT TABLE_NAME, COLUMN_NAME FROM information_schema.COLUMNS WHERE TABLE_SCHEMA={} AND "
            u"BINARY TABLE_SCHEMA={} AND TABLE_NAME NOT IN (SELECT TABLE_NAME FROM information_schema.TABLES "
            u"WHERE TABLE_SCHEMA={} AND TABLE_TYPE='SEQUENCE') ORDER BY BINARY TABLE_NAME, ORDINAL_POSITION",
            {name, name, name});
    }
    bool holds(Pool& /*pool*/, StringView /*name*/) const override { return true; }
    bool isTaken(const DataError& failure) const override { return isOneOf(failure, {1007, 1050}); }
    bool isMissing(const DataError& failure) const override { return isOneOf(failure, {1049}); }
    bool isForbidden(const DataError& failure) const override { return isOneOf(failure, {1044, 1142, 1227}); }
    StringView rightToCreate() const override
    {
        return u"GRANT ALL PRIVILEGES sobre `zv\\_%`.*, sobre la base del centro y sobre las que empiezan "
               u"por su "
               u"nombre y «_»";
    }

    /// One statement renames all tables or none. A database cannot be renamed; rights belong to its name, and
    /// stay. What the tables are moved from stays too, empty.
    void place(Pool& pool, StringView passing, StringView name, StringView kept) const override
    {
        String renames;
        const auto add = [&](const String& from, const String& to) {
            const std::vector<String> moved = tables(pool, from);
            if (moved.empty())
                return;
            pool.run(u"CREATE DATABASE IF NOT EXISTS " + quotedName(to) + String(letters));
            pool.run(u"ALTER DATABASE " + quotedName(to) + String(letters));
            for (const String& each : moved)
                renames += (renames.empty() ? u"RENAME TABLE " : u", ") + placeOf(from, each) + u" TO " +
                           placeOf(to, each);
        };
        for (const Database which : everyDatabase) {
            if (!kept.empty())
                add(schemaName(name, which), schemaName(kept, which));
            add(schemaName(passing, which), schemaName(name, which));
        }
        try {
            pool.run(renames);
        } catch (const DataError&) {
            for (const Database which : everyDatabase)
                if (const String made = schemaName(kept, which); !kept.empty() && tables(pool, made).empty())
                    dropOrphan(pool, made);
            throw;
        }
    }

    /// The server frees a lock with the session that held it, however that ends. A cluster's node knows the
    /// locks of its own sessions alone: there only what was begun a day ago has no owner.
    void dropOrphans(Pool& pool, StringView ownName) const override
    {
        for (const auto& [schema, name] : pairs(
                 pool, u"SELECT SCHEMA_NAME, REGEXP_REPLACE(SCHEMA_NAME,'_(borrado|entrada)$','') "
                       u"FROM information_schema.SCHEMATA WHERE SCHEMA_NAME REGEXP "
                       u"'^zv_(guion|nuevo)_[0-9]{12,}(_borrado|_entrada)?$' AND (NOT EXISTS (SELECT 1 FROM "
                       u"information_schema.GLOBAL_VARIABLES WHERE VARIABLE_NAME='WSREP_ON' AND "
                       u"VARIABLE_VALUE='ON') OR EXISTS (SELECT 1 FROM information_schema.TABLES WHERE "
                       u"TABLE_SCHEMA=SCHEMA_NAME AND CREATE_TIME<NOW()-INTERVAL 1 DAY))"))
            if (name != ownName && isFree(pool, name))
                dropOrphan(pool, schema);
    }

    /// A single transaction of a single link reads all databases of the server.
    bool oneLinkReadsAll() const override { return true; }
    void beginSnapshot(std::span<Pool* const> pools) const override
    {
        for (Pool* const each : pools) {
            each->run(u"BEGIN");
            each->run(u"SET TRANSACTION ISOLATION LEVEL REPEATABLE READ");
            each->run(u"START TRANSACTION WITH CONSISTENT SNAPSHOT, READ ONLY");
        }
    }

private:
    static std::vector<String> tables(Pool& pool, StringView schema)
    {
        std::vector<String> result;
        for (const auto& [table, its] : pairs(
                 pool, u"SELECT TABLE_NAME, TABLE_SCHEMA FROM information_schema.TABLES WHERE TABLE_SCHEMA=" +
                           textLiteral(schema)))
            if (its == schema)
                result.push_back(table);
        return result;
    }
    static bool isFree(Pool& pool, StringView name)
    {
        return CBool(pool.run(u"SELECT " + overSlots(name, u"IS_FREE_LOCK({})", u" AND "))->value(0));
    }
};

} // namespace

const Schemas& mariadbSchemas()
{
    static const MariadbSchemas known;
    return known;
}

} // namespace zv::odbc
