#pragma once

#include "robot/Play.h"

#include <iosfwd>
#include <span>

namespace zv {

/// The command line behind "guion": plays files on a stage. Transcripts and results go to `out`, mistakes
/// (file, line and reason) to `err`.
///   --comprobar   compares with the lines that are expected
///   --reescribir  writes what was observed into the files
///   --bd URL      fresh databases there instead of in memory
///   --ejemplo     fresh databases with the sample school in them instead of empty
///   --en URL      the databases that exist there, which the guion then changes
///   --motor       behind the transcripts a line with the engine's name and version
/// Returns 0 when all ran and matched, 1 on a difference, 2 on a mistake.
int playGuiones(std::span<const String> words, const StageMaker& stage, std::ostream& out, std::ostream& err);

} // namespace zv
