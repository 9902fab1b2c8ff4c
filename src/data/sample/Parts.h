#pragma once

#include "data/sample/Writer.h"

/// Stages of the sample school, in the order in which they are written.
namespace zv::sample {

/// A subject as it is taught in a section.
struct TaughtSubject {
    Long id;
    Long subject;
};

struct Section {
    Long id;
    Long course; ///< 1 to 6 primary, 7 to 10 secondary, 11 and 12 the last two years.
    std::vector<TaughtSubject> subjects;
    std::vector<Long> pupils; ///< Those who have not left.
};

struct Illness {
    StringView name;
    StringView description;
};
inline constexpr Illness illnesses[] = {
    {u"Asma", u"Lleva el inhalador en la mochila.\r\nAvisar a la familia tras una crisis."},
    {u"Celiaquía", u"Comedor: menú sin gluten."},
    {u"Diabetes", u"Control de glucosa antes de Educación Física."},
    {u"Alergia a los frutos secos", u"Autoinyector de adrenalina en secretaría."},
    {u"Epilepsia", u""},
    {u"Migraña", u""},
};

/// Writes catalogues, banks, courses, questions: the tables of constants.
void addFixedRows(Writer& centro);
/// Writes staff, sections, pupils and their families. Gives the sections, section n at index n - 1.
std::vector<Section> addPeople(Writer& centro, Dice& dice);
/// Writes notes of the guidance advice and individual reports of some sections.
void addReports(Writer& centro, Dice& dice, const std::vector<Section>& sections);
/// A few rows for each table that the others left empty, as that of a new dialog: numbered texts, and
/// references to the first row.
void addOtherRows(Writer& centro);
/// Profiles and users; user 1 sees everything, 2 to 13 are tutors, and 14 is none of the staff.
void addUsers(Writer& entrada);

} // namespace zv::sample
