#pragma once

#include "data/history/Undo.h"
#include "runtime/Time.h"

namespace zv::history {

/// A save of several statements that was begun, and not ended because its station died.
struct Cut {
    Long save = 0;
    Long opening = 0;
    String moment = {}; ///< Of its first entry, UTC.
    Opening by = {};
    String what = {};  ///< "del banco 2100", "de los informes de 2º A", as far as the tables tell.
    String units = {}; ///< "sucursales", "alumnos".
    Long written = 0;  ///< How many of them it changed.
    Long of = 0;       ///< Out of how many; 0 where nothing tells.
};

/// Whether a station that was last heard of at `sign` (UTC, by its own clock) has ended.
using Gone = std::function<bool(StringView station, Seconds sign)>;

/// The cut saves, the newest first. One whose station died behind the last statement and before the note of
/// its end is among them: nothing tells it from one that had more to write.
std::vector<Cut> cuts(Connection& centro, const Gone& gone);
/// "El guardado del banco 2100 de ayer a las 9:14 se cortó: 12 sucursales."
String told(const Cut& cut, Seconds now);
/// Takes it back whole, and notes it as ended, in one transaction: it is not found again, whatever stood over
/// parts of it.
Plan takeBack(HistoryConnection& centro, const Cut& cut, const Opening& by);

} // namespace zv::history
