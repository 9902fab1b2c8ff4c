#pragma once

#include "runtime/String.h"

namespace zv {

/// How an engine wants written what the dialogs write in their own way. The defaults change nothing.
struct Dialect {
    StringView joinTexts = u"+"; ///< The sign that joins texts.
    bool deleteWithStar = true;  ///< Whether `DELETE * FROM` is understood.
};

/// The statement as the engine understands it. `room` holds it where something had to change; else the
/// statement itself comes back. A `+` joins texts where a text literal stands among the terms it adds up.
/// Nothing inside literals, quoted names and comments is touched. A second statement fails as refuseSecond().
StringView inDialect(StringView statement, const Dialect& dialect, String& room);

/// What stands behind a statement's `;` may only be blanks, comments and more of the sign; else the statement
/// fails with failure::badStatement.
void refuseSecond(StringView rest, StringView statement);

/// Whether a statement asks for rows and changes none.
bool isQuery(StringView statement);

} // namespace zv
