#pragma once

#include "runtime/String.h"

#include <chrono>
#include <optional>

namespace zv {

using Seconds = std::chrono::sys_seconds;

/// This machine's clock, in UTC.
Seconds timeHere();
/// Formats: "2024-09-12 08:30:00".
String momentText(Seconds time);
/// Formats the time of now, with milliseconds: "2024-09-12 08:30:00.125".
String momentNow();
/// Parses a timestamp of a database in that format; any separator of day and hour, and anything behind the
/// seconds, is accepted. nullopt for another format.
std::optional<Seconds> momentIn(StringView text);
/// Parses a text of digits only, nine at most; nullopt for anything else.
std::optional<int> numberIn(StringView digits);
/// Formats in this machine's local time.
String localText(Seconds time);
/// Inverse of localText(), with the formats of momentIn(). Of an hour that a night has twice it is either.
std::optional<Seconds> localMomentIn(StringView text);
/// Says it in words: "hoy a las 9:14", "ayer a la 1:05", "el 12/9/2024 a las 9:14"; `now` says which day is
/// today.
String whenTold(Seconds time, Seconds now);

} // namespace zv
