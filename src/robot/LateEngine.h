#pragma once

#include "data/Engine.h"

namespace zv {

/// Decorator of another engine, scheme "tardia" in front of that one's URL ("tardia:sqlite:colegio.db"): its
/// databases are late-bound, as objects that know `Execute`, `EOF`, `MoveNext`, `Fields` and `Close` by name
/// and nothing else. Guiones played on it prove that the module asks a host for no more. What the module does
/// not call (executeNative(), the engine's own operations) is forwarded directly.
std::unique_ptr<Engine> lateEngine();

} // namespace zv
