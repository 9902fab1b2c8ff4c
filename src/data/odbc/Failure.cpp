#include "data/odbc/Failure.h"

#include "data/UniqueIndex.h"

#include <array>
#include <charconv>

namespace zv::odbc {
namespace {

struct Rule {
    std::string_view state; ///< SQLSTATE, or a prefix of it.
    std::int32_t native;    ///< The engine's own number; 0: any.
    StringView words;       ///< Substring of the engine's text.
    std::int32_t number;
};

/// Lookup table: the first match counts, and the default is otherData. Comments name the engines that send
/// the state; where one sends it for several failures, its own number or words tell them apart.
constexpr std::array rules{
    // Unique violation; Pool::isTakenKey finds out whether it was the key's index.
    Rule{"23505", 0, u"", failure::keyExists},                     // PostgreSQL
    Rule{"23000", 1062, u"", failure::keyExists},                  // MariaDB
    Rule{"23000", 2627, u"", failure::keyExists},                  // SQL Server, a key
    Rule{"23000", 2601, u"", failure::keyExists},                  // SQL Server, a unique index
    Rule{"23000", -1605, u"", failure::keyExists},                 // Access
    Rule{"HY000", 19, u"PRIMARY KEY must be", failure::keyExists}, // SQLite of old
    // What a user may not do.
    Rule{"42501", 0, u"", failure::otherData},                                                  // PostgreSQL
    Rule{"42000", 1044, u"", failure::otherData}, Rule{"42000", 1142, u"", failure::otherData}, // MariaDB
    Rule{"42000", 1143, u"", failure::otherData}, Rule{"42000", 1227, u"", failure::otherData}, // MariaDB
    // Constraint violation, data type mismatch.
    Rule{"23", 0, u"", failure::brokenConstraint}, Rule{"22", 0, u"", failure::brokenConstraint},
    Rule{"HY000", 19, u"", failure::brokenConstraint},   // SQLite
    Rule{"HY000", 20, u"", failure::brokenConstraint},   // SQLite, a mismatch
    Rule{"45000", 0, u"", failure::brokenConstraint},    // MariaDB, a trigger's own
    Rule{"HY000", 1364, u"", failure::brokenConstraint}, // MariaDB, a column without a default
    // Missing table, missing column, syntax error.
    Rule{"42P01", 0, u"", failure::tableMissing}, // PostgreSQL
    Rule{"42S02", 0, u"", failure::tableMissing},
    Rule{"HY000", 1, u"no such table", failure::tableMissing}, // SQLite
    Rule{"42703", 0, u"", failure::columnMissing},             // PostgreSQL
    Rule{"42S22", 0, u"", failure::columnMissing},
    Rule{"07002", -3010, u"", failure::columnMissing},                // Access parses it as a parameter
    Rule{"HY000", 1, u"no such column", failure::columnMissing},      // SQLite
    Rule{"HY000", 1, u"has no column named", failure::columnMissing}, // SQLite
    Rule{"42", 0, u"", failure::badStatement}, Rule{"37000", 0, u"", failure::badStatement},
    Rule{"21", 0, u"", failure::badStatement}, Rule{"HY000", 1, u"", failure::badStatement}, // SQLite
    // Lock conflicts and timeouts.
    Rule{"55P03", 0, u"", failure::locked}, // PostgreSQL, lock_timeout
    Rule{"57014", 0, u"", failure::locked}, // PostgreSQL, statement_timeout
    Rule{"", 1969, u"", failure::locked},   // MariaDB, max_statement_time; drivers give it any state
    Rule{"40", 0, u"", failure::locked},    // Deadlocks, serialization
    Rule{"HYT00", 0, u"", failure::locked}, Rule{"HY000", 1205, u"", failure::locked}, // MariaDB, lock wait
    Rule{"HY000", 1222, u"", failure::locked},  // SQL Server, lock wait
    Rule{"HY000", -1102, u"", failure::locked}, // Access
    Rule{"HY000", 5, u"", failure::locked},     // SQLite, busy
    Rule{"HY000", 6, u"", failure::locked},     // SQLite, locked
    // Lost connection.
    Rule{"08", 0, u"", failure::connectionLost},
    Rule{"57P", 0, u"", failure::connectionLost}, // PostgreSQL, shutdown or startup
    Rule{"HYT01", 0, u"", failure::connectionLost},
    Rule{"70100", 1927, u"", failure::connectionLost},                // MariaDB, killed by an administrator
    Rule{"HY000", 2006, u"", failure::connectionLost},                // MariaDB
    Rule{"HY000", 2013, u"", failure::connectionLost},                // MariaDB
    Rule{"HY000", 1180, u"provider status", failure::connectionLost}, // Galera, cut off from the others
};

bool fits(const Rule& rule, const Diagnosis& diagnosis)
{
    return diagnosis.state.starts_with(rule.state) && (rule.native == 0 || rule.native == diagnosis.native) &&
           diagnosis.words.find(rule.words) != String::npos;
}

std::int32_t numberOf(const Diagnosis& diagnosis, StringView statement)
{
    // SQLite's message names the columns, which tells the key from another index.
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
    DataError result(lost ? failure::connectionLost : numberOf(diagnosis, statement),
                     diagnosis.state + "/" + std::to_string(diagnosis.native), diagnosis.words, statement);
    if (lost || !isReadOnly(result))
        return result;
    return {result.number(), result.engineCode(),
            u"el servidor sólo deja leer, o está de reserva: avise a quien lo administra; ha dicho: " +
                diagnosis.words,
            statement};
}

bool isReadOnly(const DataError& failure)
{
    // MariaDB has one number for what any of its options forbids.
    constexpr std::int32_t forbiddenByOption = 1290;
    return failure.engineCode().starts_with("25006") || // PostgreSQL
           (ownNumber(failure) == forbiddenByOption &&
            failure.engineText().find(u"read-only") != StringView::npos);
}

bool saidByServer(const DataError& failure)
{
    // PostgreSQL's driver has one state for both; what the server itself says has its severity in front.
    // MariaDB's own numbers are around those of its driver.
    const std::int32_t number = ownNumber(failure);
    return failure.engineCode().starts_with("28") || failure.engineCode().starts_with("57P03") ||
           (number >= 1000 && number < 2000) || number >= 3000 ||
           failure.engineText().find(u"FATAL:") != StringView::npos;
}

std::int32_t ownNumber(const DataError& failure)
{
    const std::string& code = failure.engineCode();
    const std::size_t mark = code.find('/');
    std::int32_t number = 0;
    if (mark != std::string::npos)
        std::from_chars(code.data() + mark + 1, code.data() + code.size(), number);
    return number;
}

} // namespace zv::odbc
