#include "data/DataError.h"
#include "data/Statement.h"
#include "data/Tokens.h"
#include "data/Transaction.h"
#include "data/odbc/Schemas.h"
#include "runtime/Convert.h"

namespace zv::odbc {
namespace {

// Namespace (first number) of our advisory locks on a server, apart from those of other programs.
constexpr StringView lockKind = u"23126";

String lockOf(StringView name) { return u"(" + String(lockKind) + u",hashtext(" + textLiteral(name) + u"))"; }

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

/// Gives the schemas of one name, and their tables, the owner and the rights of those of another; in a
/// transaction.
void giveRights(Pool& pool, StringView from, StringView to)
{
    for (const Database which : everyDatabase) {
        const String old = textLiteral(schemaName(from, which));
        const String made = textLiteral(schemaName(to, which));
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

class PostgresqlSchemas final : public Schemas {
public:
    bool fits(StringView name) const override
    {
        constexpr std::size_t longest = 63;
        return toUtf8(name).size() <= longest;
    }
    String select(StringView schema) const override { return u"SET search_path TO " + quotedName(schema); }
    String ownership(StringView name) const override
    {
        return u"SELECT pg_advisory_lock_shared" + lockOf(name);
    }
    void create(Pool& pool, StringView name) const override
    {
        pool.run(u"CREATE SCHEMA " + quotedName(name));
    }
    void drop(Pool& pool, StringView name) const override
    {
        pool.run(u"DROP SCHEMA IF EXISTS " + quotedName(name) + u" CASCADE");
    }
    std::vector<String> existing(Pool& pool, StringView name) const override
    {
        String names;
        for (const Database which : everyDatabase)
            names += (names.empty() ? u"" : u",") + textLiteral(schemaName(name, which));
        std::vector<String> result;
        for (const auto& [found, same] :
             pairs(pool, u"SELECT nspname, nspname FROM pg_namespace WHERE nspname IN (" + names + u")"))
            result.push_back(found);
        return result;
    }
    String columns(StringView schema) const override
    {
        return u"SELECT c.relname, a.attname FROM pg_class c JOIN pg_attribute a ON a.attrelid=c.oid WHERE "
               u"c.relnamespace=(SELECT oid FROM pg_namespace WHERE nspname=" +
               textLiteral(schema) +
               u") AND c.relkind IN ('r','v','m','f','p') AND a.attnum>0 AND NOT a.attisdropped "
               u"ORDER BY c.relname, a.attnum";
    }
    bool holds(Pool& pool, StringView name) const override
    {
        return pool.run(u"SELECT nspname FROM pg_namespace WHERE nspname=" + textLiteral(name))->row() !=
               nullptr;
    }
    bool isTaken(const DataError& failure) const override
    {
        // Or it violates the unique key of the catalogue.
        return failure.engineCode().starts_with("42P06") || failure.number() == failure::keyExists;
    }
    bool isMissing(const DataError& /*failure*/) const override { return false; }
    bool isForbidden(const DataError& failure) const override
    {
        return failure.engineCode().starts_with("42501");
    }
    StringView rightToCreate() const override { return u"GRANT CREATE ON DATABASE"; }

    void place(Pool& pool, StringView passing, StringView name, StringView kept) const override
    {
        Transaction transaction([&pool](StringView each) { pool.run(each); });
        if (!kept.empty()) {
            giveRights(pool, name, passing);
            rename(pool, name, kept);
        }
        rename(pool, passing, name);
        transaction.commit();
    }

    /// The server frees an advisory lock with the session that held it, however that ends: an exclusive lock
    /// that can be acquired proves that no owner lives.
    void dropOrphans(Pool& pool, StringView ownName) const override
    {
        const auto orphans = pairs(
            pool, u"SELECT schema, name FROM (SELECT nspname AS schema, regexp_replace(nspname, "
                  u"'_(borrado|entrada)$', '') AS name FROM pg_namespace WHERE nspname ~ "
                  u"'^zv_(guion|nuevo)_[0-9]{12,}(_borrado|_entrada)?$' OFFSET 0) AS passing WHERE name<>" +
                      textLiteral(ownName) + u" AND pg_try_advisory_lock(" + String(lockKind) +
                      u",hashtext(name))");
        for (const auto& [schema, name] : orphans) {
            dropOrphan(pool, schema);
            pool.run(u"SELECT pg_advisory_unlock" + lockOf(name));
        }
    }

    /// One transaction that sees one instant, and two that see the same.
    void beginSnapshot(std::span<Pool* const> pools) const override
    {
        String instant;
        for (Pool* const each : pools) {
            each->run(u"BEGIN");
            each->run(u"SET TRANSACTION ISOLATION LEVEL REPEATABLE READ READ ONLY");
            if (instant.empty())
                instant = CStr(each->run(u"SELECT pg_export_snapshot()")->value(0));
            else
                each->run(u"SET TRANSACTION SNAPSHOT " + textLiteral(instant));
        }
    }

private:
    void rename(Pool& pool, StringView from, StringView to) const
    {
        for (const String& each : existing(pool, from))
            pool.run(u"ALTER SCHEMA " + quotedName(each) + u" RENAME TO " +
                     quotedName(String(to) + each.substr(from.size())));
    }
};

} // namespace

const Schemas& postgresqlSchemas()
{
    static const PostgresqlSchemas known;
    return known;
}

} // namespace zv::odbc
