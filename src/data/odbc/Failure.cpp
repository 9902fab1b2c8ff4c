#include "data/odbc/Failure.h"

#include "data/UniqueIndex.h"

#include <array>

namespace zv::odbc {
namespace {

struct Rule {
    std::string_view state; ///< SQLSTATE, or how it begins.
    std::int32_t native;    ///< The engine's own number; 0: any.
    StringView words;       ///< What the engine's text holds.
    std::int32_t number;
};

/// The first rule that fits decides; what none fits is otherData. Behind each state stand the engines that
/// send it: where an engine has one state for several failures, its own number or words tell them apart.
constexpr std::array rules{
    // A value that may be there once: the key, unless the indexes of the table say that it is another.
    Rule{"23505", 0, u"", failure::keyExists},                     // PostgreSQL
    Rule{"23000", 1062, u"", failure::keyExists},                  // MariaDB
    Rule{"23000", 2627, u"", failure::keyExists},                  // SQL Server, a key
    Rule{"23000", 2601, u"", failure::keyExists},                  // SQL Server, a unique index
    Rule{"23000", -1605, u"", failure::keyExists},                 // Access
    Rule{"HY000", 19, u"PRIMARY KEY must be", failure::keyExists}, // SQLite of old
    // A value that is not admitted, or not of the column's kind.
    Rule{"23", 0, u"", failure::brokenConstraint}, Rule{"22", 0, u"", failure::brokenConstraint},
    Rule{"HY000", 19, u"", failure::brokenConstraint}, // SQLite
    Rule{"HY000", 20, u"", failure::brokenConstraint}, // SQLite, a mismatch
    // A table, a column that is missing; a statement that is not understood.
    Rule{"42P01", 0, u"", failure::tableMissing}, // PostgreSQL
    Rule{"42S02", 0, u"", failure::tableMissing},
    Rule{"HY000", 1, u"no such table", failure::tableMissing}, // SQLite
    Rule{"42703", 0, u"", failure::columnMissing},             // PostgreSQL
    Rule{"42S22", 0, u"", failure::columnMissing},
    Rule{"07002", -3010, u"", failure::columnMissing},                // Access takes it for a parameter
    Rule{"HY000", 1, u"no such column", failure::columnMissing},      // SQLite
    Rule{"HY000", 1, u"has no column named", failure::columnMissing}, // SQLite
    Rule{"42501", 0, u"", failure::otherData},                        // PostgreSQL: no right to it
    Rule{"42", 0, u"", failure::badStatement}, Rule{"37000", 0, u"", failure::badStatement},
    Rule{"21", 0, u"", failure::badStatement}, Rule{"HY000", 1, u"", failure::badStatement}, // SQLite
    // Another station is in the way.
    Rule{"55P03", 0, u"", failure::locked}, // PostgreSQL, lock_timeout
    Rule{"57014", 0, u"", failure::locked}, // PostgreSQL, statement_timeout
    Rule{"40", 0, u"", failure::locked},    // Deadlocks, serialization
    Rule{"HYT00", 0, u"", failure::locked}, Rule{"HY000", 1205, u"", failure::locked}, // MariaDB, lock wait
    Rule{"HY000", 1222, u"", failure::locked},  // SQL Server, lock wait
    Rule{"HY000", -1102, u"", failure::locked}, // Access
    Rule{"HY000", 5, u"", failure::locked},     // SQLite, busy
    Rule{"HY000", 6, u"", failure::locked},     // SQLite, locked
    // Nobody answers any more.
    Rule{"08", 0, u"", failure::connectionLost},
    Rule{"57P", 0, u"", failure::connectionLost}, // PostgreSQL goes down, or comes up
    Rule{"HYT01", 0, u"", failure::connectionLost},
    Rule{"HY000", 2006, u"", failure::connectionLost}, // MariaDB
    Rule{"HY000", 2013, u"", failure::connectionLost}, // MariaDB
};

bool fits(const Rule& rule, const Diagnosis& diagnosis)
{
    return diagnosis.state.starts_with(rule.state) && (rule.native == 0 || rule.native == diagnosis.native) &&
           diagnosis.words.find(rule.words) != String::npos;
}

std::int32_t numberOf(const Diagnosis& diagnosis, StringView statement)
{
    // SQLite names the columns.
    if (diagnosis.native == 19 && tellsTakenKey(diagnosis.words, statement))
        return failure::keyExists;
    for (const Rule& rule : rules)
        if (fits(rule, diagnosis))
            return rule.number;
    return failure::otherData;
}

} // namespace

DataError failureOf(const Diagnosis& diagnosis, bool lost, StringView statement)
{
    return {lost ? failure::connectionLost : numberOf(diagnosis, statement),
            diagnosis.state + "/" + std::to_string(diagnosis.native), diagnosis.words, statement};
}

} // namespace zv::odbc
