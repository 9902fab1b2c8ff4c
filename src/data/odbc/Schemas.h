#pragma once

#include "data/Engine.h"
#include "data/odbc/Pool.h"

#include <array>
#include <span>

namespace zv::odbc {

/// How a kind of server keeps schools side by side: three schemas each, NAME, NAME_borrado, NAME_entrada. On
/// MariaDB a schema is a database.
class Schemas {
public:
    Schemas() = default;
    Schemas(const Schemas&) = delete;
    Schemas& operator=(const Schemas&) = delete;
    virtual ~Schemas() = default;

    /// Whether the server keeps a name whole; truncated, the three would collide.
    virtual bool fits(StringView name) const = 0;
    /// Attributes of a connection string that name a schema, where it has no ESQUEMA.
    virtual std::vector<StringView> attributes() const { return {}; }
    /// Query for the schema that a new link stands in, and whether the server keeps names of schemas in small
    /// letters; empty where there is nothing to ask.
    virtual StringView standing() const { return {}; }
    /// Setting of a link that selects the schema.
    virtual String select(StringView schema) const = 0;
    /// Setting for the links of the creator of temporary schemas: a lock, held as long as one of the links
    /// lives, marks them as owned.
    virtual String ownership(StringView name) const = 0;

    virtual void create(Pool& pool, StringView name) const = 0;
    virtual void drop(Pool& pool, StringView name) const = 0;
    /// Which of the three exist.
    virtual std::vector<String> existing(Pool& pool, StringView name) const = 0;
    /// Query for the tables and views of a schema and their columns, a row for each, in their order. A
    /// driver's own asks for names that are like that of the schema, and reads the catalogue of all schools.
    virtual String columns(StringView schema) const = 0;
    /// Whether a schema that a link selected is there.
    virtual bool holds(Pool& pool, StringView name) const = 0;
    /// Whether a schema was there already: of two that create it at the same moment, one finds it so.
    virtual bool isTaken(const DataError& failure) const = 0;
    /// Whether the schema that a link was to select is not there.
    virtual bool isMissing(const DataError& failure) const = 0;
    /// Whether this user may not create or see it, and what he should be given.
    virtual bool isForbidden(const DataError& failure) const = 0;
    virtual StringView rightToCreate() const = 0;
    /// Moves the three schemas `passing` to `name`, and what is there, unless `kept` is empty, to `kept`; all
    /// or nothing. Owners and rights of what was there are those of the new ones, as far as this user may.
    virtual void place(Pool& pool, StringView passing, StringView name, StringView kept) const = 0;
    /// Garbage collection: drops temporary schemas without an owner. Those that this user may not drop stay.
    virtual void dropOrphans(Pool& pool, StringView ownName) const = 0;
    /// Begins transactions in which all pools, or all schemas of a single one, are seen as of one instant.
    virtual void beginSnapshot(std::span<Pool* const> pools) const = 0;
    /// Whether one link can read all three, and beginSnapshot() wants it so.
    virtual bool oneLinkReadsAll() const { return false; }

protected:
    /// Tries to drop orphans; a lost connection alone is a failure.
    void dropOrphan(Pool& pool, StringView schema) const;
};

/// Of a server with Placing::schemas.
const Schemas& schemasOf(const Server& server);
const Schemas& postgresqlSchemas();
const Schemas& mariadbSchemas();

/// Name of a database's schema, of a school's.
String schemaName(StringView school, Database which);
/// The rows of a query for two texts.
std::vector<std::array<String, 2>> pairs(Pool& pool, StringView statement);

/// Kinds of temporary schemas.
enum class Purpose {
    guion, ///< Dropped when the guion ends.
    nuevo  ///< Of a school in the making; renamed when it is complete.
};
/// Unique random name for temporary schemas.
String passingName(Purpose purpose);
bool isPassing(StringView name);

/// The same target for links that select no schema, which may not be there yet.
Target withoutSchema(Target target);

/// RAII owner of a temporary schema.
struct TemporarySchema {
    Pool owner; ///< Holds the lock also while a lost link of `pool` is not yet replaced.
    Pool pool;

    explicit TemporarySchema(const Target& target);
    TemporarySchema(const TemporarySchema&) = delete;
    TemporarySchema& operator=(const TemporarySchema&) = delete;
    ~TemporarySchema();
};

} // namespace zv::odbc
