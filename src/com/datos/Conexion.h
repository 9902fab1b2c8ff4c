#pragma once

#include "com/ComObject.h"

#include <memory>

namespace zv::com {

/// Late-bound connection for hosts without one of their own: Open(URL, which), Execute(statement), State,
/// Close. `which` is "centro" (default), "borrado" or "entrada". Its recordsets have EOF, MoveNext,
/// MoveFirst, Fields(name).Value, State and Close.
std::unique_ptr<ComObject> newConexion();

} // namespace zv::com
