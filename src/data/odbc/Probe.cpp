#include "data/odbc/Probe.h"

#include "data/Statement.h"
#include "runtime/Convert.h"

#include <random>

namespace zv::odbc {

Probe probe(const std::shared_ptr<Link>& link, const Server& kind)
{
    const String text = u"ñЩ";
    Probe result;
    try {
        const StatementRows rows(link, u"SELECT " + textLiteral(text) +
                                           (kind.session.empty() ? String() : u", " + String(kind.session)));
        if (!rows.row())
            return result;
        const String* found = std::get_if<String>(&rows.row()->front());
        result.takesAllTexts = found && *found == text;
        if (kind.session.empty())
            return result;
        result.session = CLng(rows.value(1));
        result.isDirect = link->leadsTo(result.session, CLng(rows.value(2)));
    } catch (const DataError&) {
        if (link->isLost())
            throw;
    }
    return result;
}

bool sharesSessions(const std::shared_ptr<Link>& link, const Probe& found, const Server& kind,
                    const std::function<std::shared_ptr<Link>()>& another)
{
    constexpr int asked = 30;
    if (found.isDirect || found.session <= 0)
        return false;
    const std::shared_ptr<Link> second = another();
    const Long its = probe(second, kind).session;
    std::random_device chance;
    // Where the second has no answer, the first is asked alone.
    bool shared = its > 0 && its == found.session;
    for (int time = 0; time < asked && !shared; ++time) {
        const bool first = its <= 0 || chance() % 2 == 0;
        // A probe that failed without losing its link has seen nothing.
        const Long now = probe(first ? link : second, kind).session;
        shared = now > 0 && now != (first ? found.session : its);
    }
    return shared;
}

} // namespace zv::odbc
