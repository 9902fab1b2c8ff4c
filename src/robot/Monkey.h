#pragma once

#include "runtime/Value.h"

#include <iosfwd>

namespace zv {

/// What is wished of random acts.
struct RandomActs {
    std::uint32_t seed = 1; ///< From 1. One program with the same wishes does the same acts.
    Long acts = 1000;
    bool failures = false;   ///< Some statements of the module fail.
    bool readOnly = false;   ///< The whole session is one that may not change data.
    String url = u"sqlite:"; ///< Where the databases are made, as temporarySchool has it.
};

/// Acts at random on all dialogs of the module, on a sample school of its own, and writes the guion that
/// repeats it to `out`: each command before it is run, and flushed, so that it is all there when the process
/// dies; under it what was observed. Comments at the end count what was done. Each of these is a comment of
/// its own, where it happens: a dialog that neither its cancel button nor its frame closes; in a read-only
/// session a statement that writes and is no registration; a statement with a second one behind it; a failure
/// that only a fault of the module gives. Returns whether there was none.
bool actAtRandom(const RandomActs& wishes, std::ostream& out);

} // namespace zv
