#pragma once

#include "data/Dialect.h"

namespace zv::odbc {

/// How the three databases of a school are told apart on a kind of server.
enum class Placing {
    schemas,   ///< Schemas of one database: NAME, NAME_borrado, NAME_entrada.
    databases, ///< Databases, or data sources: NAME, NAME_borrado, NAME_entrada.
    files      ///< Files side by side: colegio.db, colegio.borrado.db, colegio.entrada.db.
};

/// Properties of a kind of server. The defaults change nothing.
struct Server {
    StringView name; ///< Prefix of the engine's name as the driver reports it.
    Dialect dialect = {};
    bool makesSchools = false;  ///< Whether we can create schools there; else an administrator does.
    bool keepsAllTexts = false; ///< It stores all of Unicode, if the driver does.
    Placing placing = Placing::databases;
    StringView settings = {};         ///< Statements run first on each link.
    StringView patience = {};         ///< Pattern of the statement that sets the timeout, in seconds.
    StringView readOnlySettings = {}; ///< Statements run in addition for a read-only link.
    StringView driverOptions = {};    ///< Defaults for attributes missing in the connection string.
};

/// Lookup by the name that a driver reports; the default for an unknown one leaves statements untranslated.
const Server& serverNamed(StringView name);

} // namespace zv::odbc
