#pragma once

#include "progress/Definition.h"
#include "progress/Reading.h"

#include <optional>

namespace zv::progress {

/// One pupil's report of one kind: what is written of what is expected.
struct Report {
    Kind kind = Kind::guidance;
    Long section = 0;
    Long pupil = 0;
    String name; ///< "Abad Arias, Pablo"
    Long given = 0;
    Long expected = 0;
    bool begun = false; ///< Something is written, expected or not.
    std::vector<String> missing = {};

    bool isWhole() const { return missing.empty(); }
};

/// Which reports are asked for.
struct Look {
    std::optional<Kind> kind = {}; ///< None for all.
    Long section = 0;              ///< 0 for the school.
};

/// All reports that are asked for.
struct Panel {
    std::vector<Section> sections; ///< Those that have reports, by kind of teaching, year and name.
    std::vector<Report> reports;   ///< By section as above, kind and pupil, as the dialogs list them.
};

/// Whether the dialog of a report offers that section to everybody.
bool offers(Kind kind, const Section& section);

/// Reads how far the reports are, in a few statements, whatever the number of pupils. Fails with a DataError
/// where the database does.
Panel panel(Connection& centro, const Look& look = {});

} // namespace zv::progress
