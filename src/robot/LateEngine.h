#pragma once

#include "data/Engine.h"

namespace zv {

/// Scheme "tardia", in front of another URL ("tardia:sqlite:colegio.db"): that engine's databases, reached as
/// a host's objects would be that know `Execute`, `EOF`, `MoveNext`, `Fields` and `Close` by name and nothing
/// else. So a guion shows that the module asks for no more. executeNative() and what else is not the module's
/// goes to the engine itself.
std::unique_ptr<Engine> lateEngine();

} // namespace zv
