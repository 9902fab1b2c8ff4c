#include "journal/Act.h"

namespace zv::journal {

bool Place::same(const Place& other) const
{
    return control == other.control && index == other.index && pupil == other.pupil &&
           question == other.question && (input != Input::rating || page == other.page);
}

bool Opening::sameAs(const Opening& other) const
{
    return school == other.school && person == other.person && dialog == other.dialog && row == other.row &&
           action == other.action && section.number == other.section.number;
}

} // namespace zv::journal
