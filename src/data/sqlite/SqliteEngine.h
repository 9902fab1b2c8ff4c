#pragma once

#include "data/Engine.h"
#include "data/sqlite/Options.h"

namespace zv {

/// Factory of the embedded engine, scheme "sqlite". A location is the path of the live database; the other
/// two stand beside it: colegio.db, colegio.borrado.db, colegio.entrada.db. temporary() makes them in memory,
/// whatever the location.
std::unique_ptr<Engine> sqliteEngine(Durability durability = Durability::full, Reuse reuse = Reuse::yes);

} // namespace zv
