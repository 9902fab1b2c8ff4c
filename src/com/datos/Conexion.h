#pragma once

#include "com/ComObject.h"

#include <memory>

namespace zv::com {

/// A connection for hosts without one of their own: Open(URL, which), Execute(statement), State and Close.
/// Which of a school's databases is "centro" unless "borrado" or "entrada" is asked for. The rows of Execute
/// know EOF, MoveNext, MoveFirst, Fields(name).Value, State and Close.
std::unique_ptr<ComObject> newConexion();

} // namespace zv::com
