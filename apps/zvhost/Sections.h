#pragma once

#include "zvhost/Host.h"

namespace zv::host {

/// Section of the school that the windows of a report offer to the person of the session, and how far its
/// report is.
struct Section {
    Long id = 0;
    Long course = 0;
    Long kind = 0; ///< Kind of teaching.
    String name;
    String courseName;
    String kindName;
    Long pupils = 0;
    Long done = 0; ///< Pupils of whom something is written.
};

/// Sections behind a node of the reports, by kind of teaching and course: those that the person tutors or
/// teaches, all for profile 0. None where the school lacks what they are read from.
std::vector<Section> sections(Host& host, const Node& node);
/// The same without their pupils: none is counted.
std::vector<Section> offeredSections(Host& host, const Node& node);
/// Rows of the list of those sections.
std::vector<Row> rowsOf(const std::vector<Section>& sections);
/// Acts in the first window of a report, which has to be open, as a person who chooses the section and goes
/// on, and in the second one who chooses the pupil (0: none); as far as their lists offer it.
void chooseSection(const Section& section, Long pupil = 0);

} // namespace zv::host
