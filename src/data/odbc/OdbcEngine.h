#pragma once

#include "data/Engine.h"

namespace zv {

/// Database servers through ODBC, scheme "odbc". A location is a connection string for the driver manager
/// ("DSN=colegio;UID=secretaria"), with two attributes of our own: ESPERA=N, timeout of a statement in
/// seconds (60; 0: none), and, on PostgreSQL and MariaDB, ESQUEMA=NAME, default the database of the location
/// or the data source (MariaDB) or "centro"; the other two databases are the schemas NAME_borrado and
/// NAME_entrada. On other servers they are databases, data sources or files with these suffixes, and a school
/// is made by its administrator.
std::unique_ptr<Engine> odbcEngine();

} // namespace zv
