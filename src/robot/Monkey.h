#pragma once

#include "runtime/Value.h"

#include <iosfwd>
#include <vector>

namespace zv {

/// Parameters of random acts.
struct RandomActs {
    std::uint32_t seed = 1; ///< From 1. Deterministic: the same program and parameters give the same acts.
    Long acts = 1000;
    bool failures = false;   ///< Fault injection: some statements of the module fail.
    bool readOnly = false;   ///< Only sessions that may not change data.
    String url = u"sqlite:"; ///< Of the databases, as for temporarySchool().
    /// Commands that are given first. With some, the monkey then stays in the dialog that they opened, though
    /// it comes and goes in those over it.
    std::vector<String> first = {};
};

/// Monkey test (fuzzing by acts): acts at random on all dialogs of the module, on a temporary sample school,
/// and writes the guion that reproduces it to `out`, each command flushed before it is run, so that a crash
/// loses none; under it what was observed, and statistics in comments at the end. A violated invariant is a
/// comment where it happens: a dialog that neither its cancel button nor its frame closes; in a read-only
/// session a statement that writes and is no registration; a statement with a second one behind it; a failure
/// that only a bug of the module gives; a registration left behind by a closed dialog. Returns whether there
/// was none.
bool actAtRandom(const RandomActs& wishes, std::ostream& out);

} // namespace zv
