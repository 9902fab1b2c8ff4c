#include "data/odbc/Schemas.h"

#include "data/DataError.h"
#include "data/Statement.h"
#include "runtime/Convert.h"

#include <random>

namespace zv::odbc {
namespace {

// Namespace (first number) of our advisory locks on a server, apart from those of other programs.
constexpr StringView lockKind = u"23126";

constexpr StringView ofGuion = u"zv_guion_";
constexpr StringView ofNewSchool = u"zv_nuevo_";

String quotedName(StringView name) { return u"\"" + Replace(name, u"\"", u"\"\"") + u"\""; }

String lockOf(StringView name) { return u"(" + String(lockKind) + u",hashtext(" + textLiteral(name) + u"))"; }

std::vector<std::array<String, 2>> pairs(Pool& pool, StringView statement)
{
    std::vector<std::array<String, 2>> result;
    const std::unique_ptr<Cursor> rows = pool.run(statement);
    for (; rows->row(); rows->advance())
        result.push_back({CStr(*rows->row()->at(0)), CStr(*rows->row()->at(1))});
    return result;
}

} // namespace

StringView suffixOf(Database which)
{
    switch (which) {
    case Database::borrado:
        return u"_borrado";
    case Database::entrada:
        return u"_entrada";
    case Database::centro:
        break;
    }
    return u"";
}

String searchPath(StringView schema) { return u"SET search_path TO " + quotedName(schema); }

void createSchema(Pool& pool, StringView name) { pool.run(u"CREATE SCHEMA " + quotedName(name)); }

void dropSchema(Pool& pool, StringView name)
{
    pool.run(u"DROP SCHEMA IF EXISTS " + quotedName(name) + u" CASCADE");
}

std::vector<String> existingSchemas(Pool& pool, StringView name)
{
    String names;
    for (const Database which : everyDatabase)
        names += (names.empty() ? u"" : u",") + textLiteral(String(name) + String(suffixOf(which)));
    std::vector<String> result;
    for (const auto& [found, same] :
         pairs(pool, u"SELECT nspname, nspname FROM pg_namespace WHERE nspname IN (" + names + u")"))
        result.push_back(found);
    return result;
}

void renameSchemas(Pool& pool, StringView from, StringView to)
{
    for (const String& each : existingSchemas(pool, from))
        pool.run(u"ALTER SCHEMA " + quotedName(each) + u" RENAME TO " +
                 quotedName(String(to) + each.substr(from.size())));
}

namespace {

/// Savepoint: what this user may not do must not end the transaction.
void runIfAllowed(Pool& pool, StringView text)
{
    pool.run(u"SAVEPOINT derecho");
    try {
        pool.run(text);
        pool.run(u"RELEASE SAVEPOINT derecho");
    } catch (const DataError& failure) {
        if (!failure.engineCode().starts_with("42501"))
            throw;
        pool.run(u"ROLLBACK TO SAVEPOINT derecho");
    }
}

} // namespace

void giveRights(Pool& pool, StringView from, StringView to)
{
    for (const Database which : everyDatabase) {
        const String suffix(suffixOf(which));
        const String old = textLiteral(String(from) + suffix);
        const String made = textLiteral(String(to) + suffix);
        const String parts = statement(
            u"(SELECT format('SCHEMA %I',{}) AS part, nspacl AS acl, nspowner AS owner FROM pg_namespace "
            u"WHERE nspname={} UNION ALL SELECT format('TABLE %I.%I',{},c.relname), c.relacl, c.relowner "
            u"FROM pg_class c JOIN pg_namespace n ON n.oid=c.relnamespace "
            u"JOIN pg_class d ON d.relname=c.relname JOIN pg_namespace m ON m.oid=d.relnamespace "
            u"WHERE c.relkind='r' AND d.relkind='r' AND n.nspname={} AND m.nspname={}) AS p",
            {made, old, made, old, made});
        // Owners last: whoever gives a table away grants nothing on it any more.
        const String changes = statement(
            u"SELECT 1 AS step, format('GRANT %s ON %s TO %s%s', a.privilege_type, part, "
            u"CASE WHEN a.grantee=0 THEN 'PUBLIC' ELSE quote_ident(pg_get_userbyid(a.grantee)) END, "
            u"CASE WHEN a.is_grantable THEN ' WITH GRANT OPTION' ELSE '' END) AS text "
            u"FROM {}, aclexplode(acl) AS a WHERE a.grantee<>owner UNION ALL "
            u"SELECT 2, format('ALTER %s OWNER TO %I', part, pg_get_userbyid(owner)) FROM {} "
            u"WHERE pg_get_userbyid(owner)<>current_user AND pg_has_role(current_user,owner,'MEMBER') "
            u"ORDER BY 1, 2",
            {parts, parts});
        for (const auto& [step, text] : pairs(pool, changes))
            runIfAllowed(pool, text);
    }
}

String passingName(Purpose purpose)
{
    std::random_device chance;
    String result(purpose == Purpose::guion ? ofGuion : ofNewSchool);
    for (int part = 0; part < 3; ++part)
        result += decimalText(static_cast<Long>(chance() & 0x7FFFFFFF));
    return result;
}

bool isPassing(StringView name) { return name.starts_with(ofGuion) || name.starts_with(ofNewSchool); }

String ownership(StringView name) { return u"SELECT pg_advisory_lock_shared" + lockOf(name); }

/// The server frees an advisory lock with the session that held it, however that ends: an exclusive lock that
/// can be acquired proves that no owner lives.
void dropOrphans(Pool& pool, StringView ownName)
{
    const auto orphans =
        pairs(pool, u"SELECT schema, name FROM (SELECT nspname AS schema, regexp_replace(nspname, "
                    u"'_(borrado|entrada)$', '') AS name FROM pg_namespace WHERE nspname ~ "
                    u"'^zv_(guion|nuevo)_[0-9]{12,}(_borrado|_entrada)?$' OFFSET 0) AS passing WHERE name<>" +
                        textLiteral(ownName) + u" AND pg_try_advisory_lock(" + String(lockKind) +
                        u",hashtext(name))");
    for (const auto& [schema, name] : orphans) {
        try {
            dropSchema(pool, schema);
        } catch (const DataError& failure) {
            if (failure.number() == failure::connectionLost)
                throw;
        }
        pool.run(u"SELECT pg_advisory_unlock" + lockOf(name));
    }
}

TemporarySchema::TemporarySchema(const Target& target) : pool(target), owner(target)
{
    createSchema(pool, target.schema);
}

TemporarySchema::~TemporarySchema()
{
    try {
        dropSchema(pool, pool.target().schema);
    } catch (const RuntimeError&) {
        // Server gone: leftovers are dropped by the next process that creates schemas (dropOrphans).
    }
}

} // namespace zv::odbc
