#include "journal/Act.h"

namespace zv::journal {

bool Place::same(const Place& other) const
{
    return control == other.control && index == other.index && pupil == other.pupil &&
           within == other.within && question == other.question &&
           (input != Input::rating || page == other.page);
}

String readAs(const Place& place, const Held& held)
{
    if (held.none)
        return {};
    if (place.input == Input::option || place.input == Input::tick)
        return held.value.number != 0 ? u"sí" : u"no";
    return held.value.text;
}

bool Opening::sameAs(const Opening& other) const
{
    return school == other.school && person == other.person && dialog == other.dialog && row == other.row &&
           action == other.action && section.number == other.section.number;
}

} // namespace zv::journal
