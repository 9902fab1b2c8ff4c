#pragma once

#include "data/Engine.h"

namespace zv {

/// When a statement that returned is on disk: at once, or when the system likes (for benchmarks, that measure
/// our own cost).
enum class Durability { full, off };

/// Whether statements that differ in their values alone share what the engine made of the first.
enum class Reuse { yes, no };

/// The embedded engine, scheme "sqlite". A location is the path of the live database; the other two stand
/// beside it: colegio.db, colegio.borrado.db, colegio.entrada.db. temporary() makes them in memory, whatever
/// the location.
std::unique_ptr<Engine> sqliteEngine(Durability durability = Durability::full, Reuse reuse = Reuse::yes);

} // namespace zv
