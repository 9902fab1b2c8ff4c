#pragma once

#include "runtime/String.h"

#include <optional>

namespace zv::odbc {

/// The password for connection texts that bring none, so that it stands in no list of processes: what
/// ZV_CONTRASENA holds, or the first line of the file that ZV_CONTRASENA_FICHERO names. Without both, the
/// driver finds one in odbc.ini, or none. Fails if the file cannot be read, is empty or open to others.
std::optional<String> passwordFromOutside();

} // namespace zv::odbc
