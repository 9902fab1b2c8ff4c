#pragma once

#include "data/Dialect.h"

namespace zv::odbc {

/// How the three databases of a school stand on a server.
enum class Placing {
    schemas,   ///< Schemas of one database: NAME, NAME_borrado, NAME_entrada.
    databases, ///< Databases, or data sources: NAME, NAME_borrado, NAME_entrada.
    files      ///< Files side by side: colegio.db, colegio.borrado.db, colegio.entrada.db.
};

/// What is known of a kind of server. All but the name has a value that changes nothing.
struct Server {
    StringView name; ///< How the name begins that the driver gives its engine.
    Dialect dialect = {};
    bool makesSchools = false;  ///< Else an administrator does.
    bool keepsAllTexts = false; ///< It stores any text, if the driver takes it.
    Placing placing = Placing::databases;
    StringView settings = {};         ///< Run on each connection before anything else.
    StringView patience = {};         ///< How long a statement may take there: "{}" seconds.
    StringView readOnlySettings = {}; ///< Run besides where nothing may be changed.
    StringView driverOptions = {}; ///< Attributes for the connection text, for those that it does not give.
};

/// The server of a name that a driver gives; one that is not known takes the statements as they are written.
const Server& serverNamed(StringView name);

} // namespace zv::odbc
