#include "data/odbc/Servers.h"

#include "data/odbc/Server.h"
#include "runtime/Convert.h"

#include <algorithm>

namespace zv::odbc {
namespace {

bool isPort(StringView text)
{
    constexpr std::size_t longest = 5;
    return !text.empty() && text.size() <= longest &&
           std::ranges::all_of(text, [](char16_t each) { return each >= u'0' && each <= u'9'; });
}

} // namespace

Servers::Servers(const ConnectionText& location)
{
    const std::optional<String> list = location.find(u"SERVIDORES");
    if (!list)
        return;
    for (std::size_t from = 0; from <= list->size();) {
        const std::size_t end = std::min(list->find(u',', from), list->size());
        const String each = Trim(list->substr(from, end - from));
        from = end + 1;
        // An address of IPv6 stands in brackets, if a port follows.
        const std::size_t colon = each.rfind(u':');
        const bool hasPort = colon != String::npos && (each.find(u':') == colon || each[colon - 1] == u']');
        Place place{hasPort ? each.substr(0, colon) : each, hasPort ? each.substr(colon + 1) : String()};
        if (place.host.starts_with(u'[') && place.host.ends_with(u']'))
            place.host = place.host.substr(1, place.host.size() - 2);
        if (place.host.empty() || (hasPort && !isPort(place.port)))
            failFor(location, u"nombra mal sus servidores: SERVIDORES=uno:3306,otro:3306 son los equipos, "
                              u"cada uno con su puerto o sin él, separados por comas.");
        places_.push_back(std::move(place));
    }
}

String Servers::shown(const Place& place)
{
    return place.port.empty() ? place.host : place.host + u":" + place.port;
}

void Servers::find(StringView connectionText, const std::function<void(StringView)>& attempt)
{
    if (!isList())
        return attempt(connectionText);
    std::optional<DataError> told;
    String words;
    const std::size_t first = serving_;
    for (std::size_t trial = 0; trial < places_.size(); ++trial) {
        const std::size_t at = trial == 0 ? first : trial <= first ? trial - 1 : trial;
        ConnectionText text(connectionText);
        for (const StringView name : {u"SERVER", u"SERVERNAME"})
            text.take(name);
        text.set(u"SERVER", places_[at].host);
        if (!places_[at].port.empty())
            text.set(u"PORT", places_[at].port);
        try {
            attempt(text.text());
            serving_ = at;
            return;
        } catch (const DataError& failure) {
            // What this machine lacks, it lacks for each of them.
            if (failure.number() != failure::connectionLost || failure.engineCode().starts_with("IM"))
                throw;
            // What a server says itself is worth more than that another is not there.
            if (!told || saidByServer(failure))
                told = failure;
            words += (words.empty() ? u"" : u"; ") + shown(places_[at]) + u": " + failure.engineText();
        }
    }
    throw DataError(failure::connectionLost, told->engineCode(),
                    u"no sirve ninguno de los servidores: " + words, u"");
}

void requireServing(const std::shared_ptr<Link>& link)
{
    const Server& kind = serverNamed(link->engine().name);
    if (kind.serving.empty())
        return;
    bool isNode = false;
    {
        const StatementRows answer(link, kind.serving);
        if (CLng(answer.value(0)) == 0)
            throw DataError(failure::connectionLost, "57P03",
                            u"no admite cambios: está de reserva, o no ve a la mayoría de los suyos",
                            kind.serving);
        isNode = CLng(answer.value(1)) != 0;
    }
    if (isNode)
        StatementRows(link, kind.nodeSettings);
}

} // namespace zv::odbc
