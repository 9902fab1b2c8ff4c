#pragma once

#include "runtime/String.h"

namespace zv::progress {

/// Reports that are handed to families: guidance advice, and the individual reports of secondary and of
/// primary education.
enum class Kind { guidance, secondary, primary };
inline constexpr Kind kinds[] = {Kind::guidance, Kind::secondary, Kind::primary};

/// Name of a kind for people, and the word that commands take for it: "consejo", "eso", "primaria".
StringView nameOf(Kind kind);
StringView wordOf(Kind kind);
/// What is missing in a report of that kind, as Spanish sentences: the one definition, of which reportOf() is
/// the code. The dialogs accept a report that lacks everything; families expect it whole.
StringView definition(Kind kind);
/// What holds for all kinds, as Spanish sentences.
StringView definitionOfAll();

} // namespace zv::progress
