#pragma once

#include "data/Engine.h"

namespace zv {

/// Engine of a school with a history on any other: its URLs are that engine's with "historial:" in front
/// ("historial:sqlite:colegio.db"). Opening one switches its history on.
std::unique_ptr<Engine> historyEngine();

namespace history {

/// Decorates the live database's connection, as openSchool() gave it, if the school keeps a history.
School withHistory(School school, StringView url);

} // namespace history
} // namespace zv
