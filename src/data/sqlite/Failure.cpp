#include "data/sqlite/Failure.h"

#include "data/UniqueIndex.h"

#include <sqlite3.h>

#include <array>
#include <optional>

namespace zv::sqlite {
namespace {

struct Rule {
    int code;                   ///< Extended result code, or the primary one for all of its kind.
    std::optional<Phase> phase; ///< Empty: either.
    StringView words;           ///< Substring of the engine's text.
    std::int32_t number;
};

/// Rules, the first match decides; without one, otherData. keyExists leads to a retry with another key, so it
/// is given only where the engine names the key, and not for another unique column, which no other key would
/// help.
constexpr std::array rules{
    Rule{SQLITE_CONSTRAINT_ROWID, {}, u"", failure::keyExists},
    Rule{SQLITE_CONSTRAINT, {}, u"", failure::brokenConstraint},
    Rule{SQLITE_MISMATCH, {}, u"", failure::brokenConstraint},
    Rule{SQLITE_ERROR, {}, u"no such table", failure::tableMissing},
    Rule{SQLITE_ERROR, {}, u"no such column", failure::columnMissing},
    Rule{SQLITE_ERROR, {}, u"has no column named", failure::columnMissing},
    Rule{SQLITE_ERROR, Phase::preparing, u"", failure::badStatement},
    Rule{SQLITE_BUSY, {}, u"", failure::locked},
    Rule{SQLITE_LOCKED, {}, u"", failure::locked},
    Rule{SQLITE_CANTOPEN, {}, u"", failure::connectionLost},
    Rule{SQLITE_READONLY_DBMOVED, {}, u"", failure::connectionLost},
};

bool fits(const Rule& rule, int code, Phase phase, StringView text)
{
    return (rule.code == code || rule.code == (code & 0xFF)) && (!rule.phase || *rule.phase == phase) &&
           text.find(rule.words) != StringView::npos;
}

} // namespace

DataError failureOf(sqlite3* handle, Phase phase, StringView statement)
{
    const int code = sqlite3_extended_errcode(handle);
    const String text = static_cast<const char16_t*>(sqlite3_errmsg16(handle));
    const bool primary = code == SQLITE_CONSTRAINT_PRIMARYKEY;
    if ((primary || code == SQLITE_CONSTRAINT_UNIQUE) && tellsTakenKey(text, statement, primary))
        return {failure::keyExists, std::to_string(code), text, statement};
    for (const Rule& rule : rules) {
        if (fits(rule, code, phase, text))
            return {rule.number, std::to_string(code), text, statement};
    }
    return {failure::otherData, std::to_string(code), text, statement};
}

} // namespace zv::sqlite
