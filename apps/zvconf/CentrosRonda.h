#pragma once

#include "zvconf/CentrosInforme.h"

#include <functional>

namespace zv::zvconf {

/// Does the command with each school of the round, so many at once, each in a process of its own: what brings
/// one down stops no other. `arguments` are those of the process for a school, which reads its URL: no list
/// of processes shows it. Each school's line is printed as it ends, and how far all are where a person sees
/// it. Those whose server did not answer have another try behind all others, a
/// little later. After a signal to end none is
/// begun any more, and those at work are waited for.
void play(Round& round, std::size_t atOnce,
          const std::function<std::vector<String>(const ListedSchool&)>& arguments);

} // namespace zv::zvconf
