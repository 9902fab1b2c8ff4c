#pragma once

#include "com/ComObject.h"

#include <functional>
#include <memory>

namespace zv::com {

/// What stands around each call of the module: it readies the desktop, runs the call, and may fail itself.
using Surroundings = std::function<void(const std::function<void()>& call)>;
/// The library's composition sets them; an empty one takes them away.
void useSurroundings(Surroundings surroundings);

/// The facade as hosts call it.
std::unique_ptr<ComObject> newAsignarDatos();

} // namespace zv::com
