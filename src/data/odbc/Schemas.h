#pragma once

#include "data/Engine.h"
#include "data/odbc/Pool.h"

#include <array>

namespace zv::odbc {

/// Suffix of a database's schema: NAME, NAME_borrado, NAME_entrada.
StringView suffixOf(Database which);
/// In the order of creation and renaming.

/// Setting of a link that selects the schema (search_path).
String searchPath(StringView schema);
void createSchema(Pool& pool, StringView name);
void dropSchema(Pool& pool, StringView name);
/// Which of the three exist.
std::vector<String> existingSchemas(Pool& pool, StringView name);
/// Gives the schemas of one name, and their tables, the owner and the rights of those of another, as far as
/// this user may; to be called in a transaction.
void giveRights(Pool& pool, StringView from, StringView to);
/// Renames those of the three that exist; to be called in a transaction.
void renameSchemas(Pool& pool, StringView from, StringView to);

/// Kinds of temporary schemas.
enum class Purpose {
    guion, ///< Dropped when the guion ends.
    nuevo  ///< Of a school in the making; renamed when it is complete.
};
/// Unique random name for temporary schemas.
String passingName(Purpose purpose);
bool isPassing(StringView name);
/// Setting for the links of the creator of temporary schemas: a shared advisory lock, held as long as one of
/// the links lives, marks them as owned.
String ownership(StringView name);
/// Garbage collection: drops temporary schemas without an owner. Those that this user may not drop stay.
void dropOrphans(Pool& pool, StringView ownName);

/// RAII owner of a temporary schema.
struct TemporarySchema {
    Pool pool;
    Pool owner; ///< Second link, so that the lock is held while a lost one of `pool` is not yet replaced.

    explicit TemporarySchema(const Target& target);
    TemporarySchema(const TemporarySchema&) = delete;
    TemporarySchema& operator=(const TemporarySchema&) = delete;
    ~TemporarySchema();
};

} // namespace zv::odbc
