#pragma once

#include "data/Connection.h"
#include "suite/Station.h"

#include <chrono>

namespace zv {

/// A station that cannot be seen from here is taken for gone when it gave no sign of life for so long,
/// counted in whole minutes. One that has rows open gives a sign every minute while a dialog waits for a
/// person. The time is the server's. Where there is none (SQLite), or it does not tell the time, it is each
/// station's own in universal time: then clocks must agree to within ten minutes. A station that slept longer
/// (a closed laptop) may have lost its rows, and is not told.
inline constexpr std::chrono::minutes longestSilence{15};

/// A row that a station has open for editing.
struct Registration {
    String form;
    Long row = 0;
    Integer user = 0;
    String station;
    String moment;     ///< When it was registered, local time: "2024-09-12 08:30:00".
    bool gone = false; ///< The station has ended without releasing it.
};

/// All registrations of a school, by form and row.
std::vector<Registration> registrations(Connection& centro);
/// Frees a row, whoever holds it. False if it was not registered.
bool release(Connection& centro, StringView form, Long row);
/// Frees all rows, and returns how many there were.
int releaseAll(Connection& centro);

/// Registers a row for a user of a station, atomically between stations. False: it was free, or this user's
/// own, or its station is gone or silent. True: another user holds it. A database that fails makes it fail
/// with a DataError: it is never granted unasked.
bool registerRow(Connection& centro, const Station& station, StringView form, Long row, Integer user);
/// A sign of life for all rows of this station, if this program registered any.
void giveSign(Connection& centro, const Station& station);
/// Ends what registerRow made for this station; the registration of another one stays.
void unregisterRow(Connection& centro, const Station& station, StringView form, Long row);

} // namespace zv
