#pragma once

#include "runtime/String.h"

namespace zv {

/// How an engine spells what the dialogs write in their own dialect. The defaults change nothing.
struct Dialect {
    StringView joinTexts = u"+"; ///< Operator that concatenates texts.
    bool deleteWithStar = true;  ///< Whether `DELETE * FROM` is understood.
    bool namesInAnyCase = true;  ///< Whether names match without regard to case; else see folded().
};

/// Translates the statement token by token. `room` is the buffer of the result where something had to change;
/// else the statement itself comes back. A `+` concatenates where a text literal stands among the terms that
/// it adds up. Literals, quoted names and comments are never changed. A second statement fails as
/// refuseSecond().
StringView inDialect(StringView statement, const Dialect& dialect, String& room);

/// Folds the names that stand without quotes to small letters, for an engine to which `Pais` and `pais` are
/// two tables; and `TEXT`, in the definition of a table, to the type of unlimited texts there. `room` is the
/// buffer of the result.
StringView folded(StringView statement, String& room);

/// Injection check: behind a statement's `;` may only stand blanks, comments and more `;`; else
/// failure::badStatement.
void refuseSecond(StringView rest, StringView statement);

/// Whether a statement asks for rows and changes none.
bool isQuery(StringView statement);

} // namespace zv
