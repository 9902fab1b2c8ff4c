#pragma once

#include "runtime/String.h"

namespace zv {

/// How an engine spells what the dialogs write in their own dialect. The defaults change nothing.
struct Dialect {
    StringView joinTexts = u"+"; ///< Operator that concatenates texts.
    bool deleteWithStar = true;  ///< Whether `DELETE * FROM` is understood.
};

/// Translates the statement token by token. `room` is the buffer of the result where something had to change;
/// else the statement itself comes back. A `+` concatenates where a text literal stands among the terms that
/// it adds up. Literals, quoted names and comments are never changed. A second statement fails as
/// refuseSecond().
StringView inDialect(StringView statement, const Dialect& dialect, String& room);

/// Injection check: behind a statement's `;` may only stand blanks, comments and more `;`; else
/// failure::badStatement.
void refuseSecond(StringView rest, StringView statement);

/// Whether a statement asks for rows and changes none.
bool isQuery(StringView statement);

} // namespace zv
