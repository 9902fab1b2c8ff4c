#include "qt/paper/Reports.h"

#include "qt/QtText.h"
#include "runtime/Convert.h"

#include <algorithm>

namespace zv::paper {
namespace {

/// So many of what is missing are named, and how many more there are.
constexpr std::size_t mostNamed = 4;

} // namespace

Reports::Reports(Connection& centro, Kind kind, Long section, const Letterhead& letterhead, Day day)
    : section_(readSheets(centro, kind, section)), heading_{letterhead.school(), !letterhead.logo().isNull(),
                                                            day},
      logo_(letterhead.logo()), page_(letterhead.page(kind))
{}

String Reports::missing(std::size_t place) const
{
    const std::vector<String>& all = section_.sheets.at(place).missing;
    String named;
    for (std::size_t each = 0; each < std::min(all.size(), mostNamed); ++each)
        named += (named.empty() ? u"" : u"; ") + all[each];
    if (all.size() > mostNamed)
        named += u"; y " + decimalText(static_cast<std::int64_t>(all.size() - mostNamed)) + u" más";
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
            (draft ? QStringLiteral("Borrador · ") : QString()) + toQt(section_.sheets.at(place).fullName) +
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
