#pragma once

#include "runtime/String.h"

#include <optional>

namespace zv::odbc {

/// Password for connection strings without one, so that it shows in no process list: from the variable
/// ZV_CONTRASENA, or the first line of the file named by ZV_CONTRASENA_FICHERO. nullopt without both; the
/// driver may have one in odbc.ini. Fails if the file is unreadable, empty or accessible to others.
std::optional<String> passwordFromOutside();

} // namespace zv::odbc
