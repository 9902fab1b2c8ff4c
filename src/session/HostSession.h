#pragma once

#include "data/Connection.h"
#include "runtime/PropertyBag.h"

namespace zv {

/// Property bag with every member that ObtenerDatos reads, for hosts written in C++. It starts with the
/// values of an ordinary session (active, user 1, profile 0); hosts set members with let().
std::shared_ptr<PropertyBag> newHostSession(const School& school);

} // namespace zv
