#pragma once

#include "data/Engine.h"
#include "data/odbc/Pool.h"

#include <array>

namespace zv::odbc {

/// The schemas of a school on a server that has them: NAME, NAME_borrado, NAME_entrada.
StringView suffixOf(Database which);
/// In the order in which they are made and renamed.
constexpr std::array everyDatabase{Database::centro, Database::borrado, Database::entrada};

/// The setting by which a link finds its tables there.
String searchPath(StringView schema);
void createSchema(Pool& pool, StringView name);
void dropSchema(Pool& pool, StringView name);
/// Those of the three that are there.
std::vector<String> existingSchemas(Pool& pool, StringView name);
/// The three get another name, all or none.
void renameSchemas(Pool& pool, StringView from, StringView to);

/// For what schemas are named that are not to last.
enum class Purpose {
    guion, ///< Gone with what is played on them.
    nuevo  ///< Of a school that is being made; they get its name when it is complete.
};
/// A name that nobody else has.
String passingName(Purpose purpose);
bool isPassing(StringView name);
/// A setting for the links of who made schemas of a passing name: as long as one stands, they have an owner.
String ownership(StringView name);
/// Takes away the schemas of passing names whose owner has died. What this user may not drop stays.
void dropOrphans(Pool& pool, StringView ownName);

/// A schema that goes with its last user.
struct TemporarySchema {
    Pool pool;
    Pool owner; ///< Its link has the ownership while one of the other's is lost and not yet opened anew.

    explicit TemporarySchema(const Place& place);
    TemporarySchema(const TemporarySchema&) = delete;
    TemporarySchema& operator=(const TemporarySchema&) = delete;
    ~TemporarySchema();
};

} // namespace zv::odbc
