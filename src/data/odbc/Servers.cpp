#include "data/odbc/Servers.h"

#include "data/odbc/Server.h"
#include "runtime/Convert.h"

#include <algorithm>
#include <array>

namespace zv::odbc {
namespace {

bool isPort(StringView text)
{
    constexpr std::size_t longest = 5;
    constexpr int highest = 65535;
    if (text.empty() || text.size() > longest || text.find_first_not_of(u"0123456789") != StringView::npos)
        return false;
    const int number = std::stoi(toUtf8(text));
    return number > 0 && number <= highest;
}

/// A name, an address, or the folder of a local socket.
bool isHost(StringView text)
{
    return !text.empty() && text.find(u'@') == StringView::npos &&
           (text.starts_with(u'/') || text.find_first_of(u"/\\;={}()[]?# \"'") == StringView::npos);
}

/// Whether the driver's own options lead past the list.
bool leadsElsewhere(StringView options)
{
    const String words = u" " + lowerName(options);
    return std::ranges::any_of(std::array{u" host", u" port", u" service"},
                               [&](StringView each) { return words.find(each) != String::npos; });
}

[[noreturn]] void failForOtherWay(StringView words)
{
    throw RuntimeError(failure::otherData, u"La lista SERVIDORES no sirve de nada: " + String(words));
}

[[noreturn]] void failForNoChanges(StringView asked, StringView why)
{
    throw DataError(failure::connectionLost, "57P03", u"no admite cambios: " + String(why), asked);
}

} // namespace

Servers::Servers(const ConnectionText& location)
{
    const std::optional<String> list = location.find(u"SERVIDORES");
    if (!list)
        return;
    if (location.find(u"HOSTADDR") || leadsElsewhere(location.find(u"PQOPT").value_or(u"")))
        failFor(location,
                u"dice otra vez adónde ir, y la lista SERVIDORES no serviría de nada: quite HOSTADDR, "
                u"y de PQOPT hostaddr, host, port y service.");
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
        if (!isHost(place.host) || (hasPort && !isPort(place.port)))
            failFor(location,
                    u"nombra mal sus servidores: SERVIDORES=uno:3306,otro:3306 son los equipos, cada uno con "
                    u"su puerto (de 1 a 65535) o sin él, separados por comas. Sin http:// ni nada parecido; "
                    u"el usuario y la contraseña van aparte, en UID y PWD.");
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

bool Servers::noteTimeline(StringView cluster, Long timeline)
{
    const std::lock_guard lock(seen_);
    if (!cluster_.empty() && (cluster_ != cluster || timeline < timeline_))
        return false;
    cluster_ = cluster;
    timeline_ = timeline;
    return true;
}

void Servers::requireServing(const std::shared_ptr<Link>& link)
{
    if (!isList())
        return;
    const Server& kind = serverNamed(link->engine().name);
    if (kind.placing == Placing::files)
        failForOtherWay(u"un fichero no está en ningún servidor: quite SERVIDORES.");
    if (kind.serving.empty())
        return;
    bool isNode = false;
    {
        const StatementRows answer(link, kind.serving);
        if (CLng(answer.value(2)) == 0)
            failForOtherWay(u"la conexión va por un enchufe de este equipo: quite SOCKET del URL y de la "
                            u"fuente de datos.");
        if (CLng(answer.value(0)) == 0)
            failForNoChanges(kind.serving, u"está de reserva, o no ve a la mayoría de los suyos");
        isNode = CLng(answer.value(1)) != 0;
    }
    if (isNode)
        StatementRows(link, kind.nodeSettings);
    if (!kind.lineage.empty() && !noteTimeline(link, kind.lineage))
        failForNoChanges(kind.lineage,
                         u"no es de la instalación que servía, o era el principal antes de que se promoviera "
                         u"otro; quien administra ha de pararlo, o quitarlo de la lista. Si es el bueno, "
                         u"cierre el programa y ábralo otra vez");
}

/// True where the engine does not tell: one that only speaks like it, or keeps no log of its own.
bool Servers::noteTimeline(const std::shared_ptr<Link>& link, StringView lineage)
{
    try {
        const StatementRows answer(link, lineage);
        return noteTimeline(CStr(answer.value(0)), CLng(answer.value(1)));
    } catch (const DataError&) {
        if (link->isLost())
            throw;
        return true;
    }
}

} // namespace zv::odbc
