#pragma once

#include "data/Connection.h"
#include "runtime/PropertyBag.h"

namespace zv {

/// A session object for hosts written in C++: it answers every member that ObtenerDatos reads, with the
/// values of an ordinary session (active, user 1, profile 0) to start from. Hosts set members with let().
std::shared_ptr<PropertyBag> newHostSession(const School& school);

} // namespace zv
