#pragma once

#include "runtime/String.h"

namespace zv {

/// Regional settings (locale) for numbers.
struct Region {
    char16_t decimalMark = u',';
    char16_t grouping = u'.';
    bool operator==(const Region&) const = default;
};

inline constexpr Region spanishRegion{u',', u'.'};
inline constexpr Region pointRegion{u'.', u','};

/// The settings in force. At first use they come from the environment (LC_ALL, LC_NUMERIC, LANG: the first
/// that is set), or else from the person's settings where the system keeps them apart; Spanish where neither
/// says more, or it is "C" or "POSIX".
const Region& region();
/// Overrides them, for tests and guiones.
void useRegion(Region settings);
/// Settings of a locale name such as "es_ES.UTF-8" or "en_GB".
Region regionOfLocale(std::string_view localeName);

} // namespace zv
