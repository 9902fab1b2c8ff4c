#include "journal/Act.h"

#include "session/cConstCol.h"

namespace zv::journal {

bool Place::same(const Place& other) const
{
    return control == other.control && index == other.index && pupil == other.pupil &&
           within == other.within && question == other.question &&
           (input != Input::rating || page == other.page);
}

String readAs(const Place& place, const Content& content)
{
    if (content.none)
        return {};
    if (place.input == Input::option || place.input == Input::tick)
        return content.value.number != 0 ? u"sí" : u"no";
    return content.value.text;
}

bool Opening::sameAs(const Opening& other) const
{
    if (!sameSession(other) || dialog != other.dialog || section.number != other.section.number)
        return false;
    return section.number != 0 ||
           (action == other.action && (row == other.row || action == cConstCol::NUEVO));
}

bool Opening::elsewhere(const Opening& other) const
{
    const auto number = [](const Opening& of) {
        return StringView(of.school).substr(0, of.school.find(u' '));
    };
    return school != other.school && person == other.person && number(*this) == number(other) &&
           schoolName == other.schoolName;
}

StringView Opening::origin() const
{
    const std::size_t start = school.find(u' ') + schoolName.size() + 2;
    return start < school.size() ? StringView(school).substr(start) : StringView();
}

bool onlyChooses(StringView dialog)
{
    return dialog == u"frmConsejoOrientador1" || dialog == u"frmInformeIndividual";
}

} // namespace zv::journal
