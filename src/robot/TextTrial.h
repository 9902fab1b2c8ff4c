#pragma once

#include "runtime/Value.h"

#include <iosfwd>

namespace zv {

/// Parameters of tryTexts().
struct TextTrial {
    String url = u"sqlite:"; ///< Of the databases, as for temporarySchool().
    Long every = 1;          ///< Sampling: each box gets every n-th text, from a start of its own.
    String dialog;           ///< Only this one; "" for all.
};

/// Fuzz test of every text box: types and pastes the odd texts, on a temporary sample school, and accepts. It
/// checks three properties. Round trip: what the box showed is there when the dialog is opened again, unless
/// the dialog refused it with a message. Input: the box shows what it was given, as far as it fits, unless it
/// filters characters. Injection: only statements run whose skeleton also runs for harmless texts. Writes a
/// line for each box, and one for each violation. Returns whether there was none.
bool tryTexts(const TextTrial& trial, std::ostream& out);

} // namespace zv
