#pragma once

#include "data/Dialect.h"
#include "data/Engine.h"

namespace zv::odbc {

/// How the three databases of a school are told apart on a kind of server.
enum class Placing {
    schemas,   ///< Schemas of one server: NAME, NAME_borrado, NAME_entrada. We can create them.
    databases, ///< Databases, or data sources, of an administrator: NAME, NAME_borrado, NAME_entrada.
    files      ///< Files side by side: colegio.db, colegio.borrado.db, colegio.entrada.db.
};

/// Properties of a kind of server. The defaults change nothing.
struct Server {
    StringView name; ///< Prefix of the engine's name as the driver reports it.
    Dialect dialect = {};
    bool keepsAllTexts = false; ///< It stores all of Unicode, if the driver does.
    Placing placing = Placing::databases;
    DdlStyle ddl = DdlStyle::postgresql; ///< Tells also how its schemas are made, see Schemas.h.
    bool schemasAreCatalogs = false;     ///< Whether its driver has them as catalogues in its queries.
    bool wantsKeepalive = false;         ///< Its driver has no options for a network that no longer answers.
    StringView settings = {};            ///< Statements run first on each link.
    StringView patience = {};            ///< Pattern of the statement that sets the timeout, in seconds.
    StringView readOnlySettings = {};    ///< Statements run in addition for a read-only link.
    StringView session = {}; ///< Columns: the server's process of a link, the port of the link's other side.
    /// Query, asked in a list: takes changes; is a node of a cluster; was reached by network.
    StringView serving = {};
    /// Query, asked in a list: what copies of one server share; its timeline, of promotions.
    StringView lineage = {};
    StringView nodeSettings = {};  ///< Statement run on each link to a node of a cluster.
    StringView driverOptions = {}; ///< Defaults for attributes missing in the connection string.
};

/// Lookup by the name that a driver reports; the default for an unknown one leaves statements untranslated.
const Server& serverNamed(StringView name);

} // namespace zv::odbc
