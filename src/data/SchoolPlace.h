#pragma once

#include "runtime/String.h"

#include <set>
#include <vector>

namespace zv {

/// Where a connection string says that a school is, as far as can be told without going there.
struct SchoolPlace {
    /// What tells it from others, in one order and in small names: who asks and for how long does not matter,
    /// nor how it is spelt. Two where it depends on the server: of one that names a database and no schema,
    /// that is the school (MariaDB) or holds it (PostgreSQL).
    std::vector<String> names;
    std::set<String> servers; ///< Those listed, in small letters, with their ports; empty without a list.
};

SchoolPlace placeIn(StringView attributes);

/// Whether they share a server, so that one may be added to a list and another taken from it; what has no
/// list may be on any.
bool shareServer(const SchoolPlace& one, const SchoolPlace& other);

/// Whether both are one school's.
bool isSame(const SchoolPlace& one, const SchoolPlace& other);

} // namespace zv
