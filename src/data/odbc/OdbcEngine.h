#pragma once

#include "data/Engine.h"

namespace zv {

/// Database servers through ODBC, scheme "odbc". A location is a connection text for the driver manager
/// ("DSN=colegio;UID=secretaria"), with one attribute of our own, where the server parts a database in
/// schemas (PostgreSQL): ESQUEMA=NAME, "centro" if it is not given; the other two databases are the schemas
/// NAME_borrado and NAME_entrada. On other servers they are databases, data sources or files called so.
/// create() and temporary() work on PostgreSQL only: elsewhere a school is made by its administrator.
std::unique_ptr<Engine> odbcEngine();

} // namespace zv
