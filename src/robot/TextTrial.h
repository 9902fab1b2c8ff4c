#pragma once

#include "runtime/Value.h"

#include <iosfwd>

namespace zv {

/// Which odd texts are tried where.
struct TextTrial {
    String url = u"sqlite:"; ///< Where the databases are made, as temporarySchool has it.
    Long every = 1;          ///< Each box gets one text of so many, another share than the box before it.
    String dialog;           ///< This one alone; "" for all of them.
};

/// Types and pastes odd texts into every text box of the dialogs, on a sample school of its own, and accepts.
/// What the box showed has to be there when the dialog is opened again, unless the dialog refused it with a
/// message; what was given has to be what the box showed, as far as it fits, unless the box lets only some
/// characters through; and no statement may run but those that run for harmless texts, literals and numbers
/// aside. Writes a line for each box, and one for each thing that is not so. Returns whether all is so.
bool tryTexts(const TextTrial& trial, std::ostream& out);

} // namespace zv
