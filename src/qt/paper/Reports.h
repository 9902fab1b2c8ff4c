#pragma once

#include "qt/paper/Letterhead.h"
#include "qt/paper/Pages.h"

#include <QDate>

namespace zv::paper {

inline Day dayOf(const QDate& day) { return std::chrono::year(day.year()) / day.month() / day.day(); }

/// Reports of a section, read and ready to be set.
class Reports {
public:
    /// Reads the section and the template. Fails with a RuntimeError.
    Reports(Connection& centro, Kind kind, Long section, const Letterhead& letterhead, Day day);

    const SectionSheets& section() const { return section_; }
    /// Text of the sheet at a place of the section.
    Text text(std::size_t place) const;
    /// Whether something obligatory is missing in it.
    bool isDraft(std::size_t place) const { return !section_.sheets.at(place).missing.empty(); }
    /// The characters of it that paper cannot show; "" if it can show them all.
    QString lacking(std::size_t place) const;
    QString fileName(std::size_t place) const;

private:
    String missing(std::size_t place) const;
    Fields fields(std::size_t place) const;

    SectionSheets section_;
    Heading heading_;
    QImage logo_;
    Template page_;
};

} // namespace zv::paper
