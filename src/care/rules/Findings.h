#pragma once

#include "data/Connection.h"

#include <functional>

namespace zv::care {

/// Which dialogs a rule speaks of.
enum class Area { guidance, reports, banks, lists };

/// What a dialog will do to a row that is as it is.
struct Finding {
    StringView rule;     ///< Name of its rule: a word for programs.
    bool advice = false; ///< Nothing is lost: no dialog looks at it, but a bank will.
    String text;         ///< What will happen, and to whom, in Spanish sentences.
    String remedy;       ///< What to do about it.
    StringView table;    ///< The row that it is about: its table and key; 0 for a table as a whole.
    Long row = 0;
    Long section = 0; ///< The section in whose dialog it happens; 0 for none.
    /// Mends it within a transaction; empty where nobody but a person can decide it.
    std::function<void(Connection& centro)> repair;
};

/// Plain text of an enciphered one; fails with a RuntimeError whose words say what a person has to do.
using Decipher = std::function<String(StringView)>;

} // namespace zv::care
