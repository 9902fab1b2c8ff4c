#pragma once

#include "progress/Definition.h"
#include "progress/Reading.h"

#include <optional>

namespace zv::progress {

/// A classmate's name in a text of a report: told beside it, since it may stand there rightly.
struct Stranger {
    String part;         ///< The text's name.
    bool common = false; ///< It is one that all individual reports have.
    String said;         ///< The name as it stands there.
    Long pupil = 0;      ///< The classmate.
    String name;
};

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
    std::vector<Stranger> strangers = {};

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

/// What is missing, in words: "Nada escrito", the parts' names, "" for nothing.
String missingText(const Report& report);
/// Where a classmate's name stands, as a Spanish sentence.
String strangerText(const Stranger& stranger);

/// Whether the section's kind of teaching has that report.
bool has(const Section& section, Kind kind);
/// Whether the dialog of a report offers that section to everybody.
bool offers(Kind kind, const Section& section);

/// Pupil whose report a section has.
struct Listed {
    const Pupil* pupil = nullptr;
    bool hidden = false; ///< Falls to the guidance's window, which seeks each in the text of its list, where
                         ///< it finds 12 in 112.
};
/// Those of a section whom a report's dialog reads, in its order; the individual reports have those who have
/// left too.
std::vector<Listed> listed(Kind kind, const std::vector<const Pupil*>& section);
/// What a pupil's report has and lacks; nothing of classmates.
Report reportOf(Kind kind, const Reading& reading, const Pupil& pupil);

/// Reads how far the reports are, in a few statements, whatever the number of pupils. Fails with a DataError
/// where the database does.
Panel panel(Connection& centro, const Look& look = {});

} // namespace zv::progress
