#pragma once

#include "com/ComObject.h"

#include <functional>
#include <memory>

namespace zv::com {

/// Wrapper (around advice) of every call of the module: readies the desktop, runs the call, and may fail
/// itself.
using Surroundings = std::function<void(const std::function<void()>& call)>;
/// Set by the library's composition root; an empty one removes it.
void useSurroundings(Surroundings surroundings);

/// Adapter of the facade to the binary interface.
std::unique_ptr<ComObject> newAsignarDatos();

} // namespace zv::com
