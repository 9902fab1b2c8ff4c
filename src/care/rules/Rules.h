#pragma once

#include "care/rules/Findings.h"

#include <optional>

namespace zv::care {

/// Which rules look, and at what.
struct Look {
    std::optional<Area> area = {}; ///< None for all.
    Long section = 0;              ///< Only the pupils of this section; 0 for the school.
    Decipher decipher = {};        ///< Without it nobody looks at the illnesses.
};

/// What was found, and which rules could not look.
struct Survey {
    std::vector<Finding> findings;
    std::vector<StringView> skipped; ///< Rules whose tables or columns the school lacks.
};

/// The names of the rules, in the order in which they look.
std::vector<StringView> ruleNames();

/// Reads a school and tells what its dialogs will do to rows that are not as they should be. Writes nothing;
/// reads each table at most once for each of its forms, whatever the number of rows. Fails with a DataError
/// where the database does.
Survey survey(const School& school, const Look& look = {});

/// Repairs what was named, in one transaction through the connection, so that the history has it where it is
/// on. What has gone meanwhile is left; nothing else is touched. Gives what was repaired. Fails with a
/// DataError, and then nothing was.
std::vector<Finding> repair(const School& school, const std::vector<Finding>& named);

} // namespace zv::care
