#include "qt/paper/Reports.h"

#include "qt/QtText.h"
#include "runtime/Convert.h"

#include <algorithm>

namespace zv::paper {
namespace {

/// So many of what is missing are named, and how many more there are.
constexpr std::size_t mostNamed = 4;

bool isEmpty(const Sheet& sheet)
{
    const auto none = [](const auto& texts) { return std::ranges::all_of(texts, &String::empty); };
    return sheet.difficulties.empty() && sheet.assessment.empty() && sheet.measures.empty() &&
           none(sheet.abilities) && none(sheet.procedures) && none(sheet.attitudes) && none(sheet.answers) &&
           std::ranges::all_of(sheet.areas, [&](const Area& each) { return none(each.answers); });
}

} // namespace

Reports::Reports(Connection& centro, Kind kind, Long section, const Letterhead& letterhead, Day day)
    : section_(readSheets(centro, kind, section)),
      missing_(progress::missing(centro, kind, section)), heading_{letterhead.school(),
                                                                   !letterhead.logo().isNull(), day},
      logo_(letterhead.logo()), page_(letterhead.page(kind))
{}

String Reports::missing(std::size_t place) const
{
    const auto found = missing_.find(section_.sheets.at(place).pupil);
    // Of whom no report is expected, an empty one is a draft all the same.
    if (found == missing_.end())
        return isEmpty(section_.sheets[place]) ? String(u"todo") : String();
    String named;
    for (std::size_t each = 0; each < std::min(found->second.size(), mostNamed); ++each)
        named += (named.empty() ? u"" : u"; ") + found->second[each];
    if (found->second.size() > mostNamed)
        named += u"; y " + decimalText(static_cast<std::int64_t>(found->second.size() - mostNamed)) + u" más";
    return named;
}

Fields Reports::fields(std::size_t place) const
{
    return fieldsOf(section_, section_.sheets.at(place), heading_, missing(place));
}

Text Reports::text(std::size_t place) const
{
    const bool draft = isDraft(place);
    return {toQt(page_.fill(fields(place))),
            (draft ? QStringLiteral("Borrador · ") : QString()) + toQt(section_.sheets.at(place).fullName()) +
                QStringLiteral(" · ") + toQt(section_.section),
            draft, logo_};
}

QString Reports::lacking(std::size_t place) const
{
    QString result;
    forEachText(fields(place), [&](StringView text) { addLacking(text, result); });
    return result;
}

QString Reports::fileName(std::size_t place) const
{
    return toQt(paper::fileName(section_, section_.sheets.at(place)));
}

} // namespace zv::paper
