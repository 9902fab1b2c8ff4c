#pragma once

#include "data/Connection.h"
#include "runtime/Time.h"
#include "suite/Station.h"

#include <chrono>
#include <functional>
#include <optional>

namespace zv {

/// Timeout of a registration, in whole minutes: a station on another machine that sent no heartbeat for so
/// long counts as gone. One that has rows open sends one every minute while a dialog waits for a person.
/// Clock: the server's; where there is none (SQLite), or it gives no time, each station's own in UTC, and
/// then clocks must agree to within ten minutes. A station that slept longer (a closed laptop) may have lost
/// its rows, and is not told.
inline constexpr std::chrono::minutes longestSilence{15};

/// Advisory lock: a row that a station has open for editing.
struct Registration {
    String form;
    Long row = 0;
    Integer user = 0;
    String station;
    String moment;     ///< Creation, local time: "2024-09-12 08:30:00".
    bool gone = false; ///< Stale: the station ended without releasing it.
};

/// All registrations of a school, sorted by form and row.
std::vector<Registration> registrations(Connection& centro);
/// Forced release of a row, whoever holds it. False if it was not registered.
bool release(Connection& centro, StringView form, Long row);
/// Forced release of all rows; returns their number.
int releaseAll(Connection& centro);

/// Predicate: whether a station that did something else at `sign` (UTC) has ended. One on another machine has
/// if neither that nor a heartbeat of a row that it holds is newer than longestSilence.
std::function<bool(StringView station, Seconds sign)> goneStations(Connection& centro);

/// Tries to acquire the lock of a row for a user of a station, atomically between stations. False: acquired
/// (it was free, this user's own, or stale). True: another user holds it. A database error fails with a
/// DataError: the lock is never taken for granted.
bool registerRow(Connection& centro, const Station& station, StringView form, Long row, Integer user);
/// The same for work that shares a row with no dialog, not even the user's own. Gives who holds it; nullopt:
/// acquired.
std::optional<Registration> registerRowAlone(Connection& centro, const Station& station, StringView form,
                                             Long row, Integer user);
/// Heartbeat for all rows of this station, if this process registered any.
void giveSign(Connection& centro, const Station& station);
/// Releases the lock if this station holds it; another's stays.
void unregisterRow(Connection& centro, const Station& station, StringView form, Long row);

} // namespace zv
