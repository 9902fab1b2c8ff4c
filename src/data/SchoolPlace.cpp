#include "data/SchoolPlace.h"

#include "data/ConnectionText.h"

#include <algorithm>
#include <map>
#include <utility>

namespace zv {
namespace {

String taken(std::map<String, String>& values, const String& name)
{
    const auto node = values.extract(name);
    return node ? node.mapped() : String();
}

std::set<String> serversIn(StringView list, const String& port)
{
    std::set<String> servers;
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(u','), list.size());
        String each = lowerName(Trim(list.substr(0, end)));
        const std::size_t colon = each.rfind(u':');
        const bool hasPort =
            colon != String::npos && (each.find(u':') == colon || (colon > 0 && each[colon - 1] == u']'));
        if (!hasPort)
            each.append(u":").append(port);
        servers.insert(std::move(each));
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return servers;
}

} // namespace

SchoolPlace placeIn(StringView attributes)
{
    std::map<String, String> values = ConnectionText(attributes).values();
    for (const StringView who : {u"espera", u"pwd", u"password", u"uid", u"user", u"username"})
        values.erase(String(who));
    const String list = taken(values, u"servidores");
    const auto port = values.find(u"port");
    const String schema = taken(values, u"esquema");
    String base = taken(values, u"database");
    const String other = taken(values, u"db");
    if (base.empty())
        base = other;
    String rest;
    for (const auto& [name, value] : values)
        rest.append(name).append(u"=").append(value).append(u";");
    const auto named = [&](const String& database, const String& school) {
        return rest + u"database=" + database + u";esquema=" + school + u";";
    };
    SchoolPlace place{{named(base, schema.empty() ? u"centro" : schema)},
                      serversIn(list, port == values.end() ? String() : port->second)};
    if (schema.empty() && !base.empty())
        place.names.push_back(named({}, base));
    return place;
}

bool shareServer(const SchoolPlace& one, const SchoolPlace& other)
{
    return one.servers.empty() || other.servers.empty() ||
           std::ranges::any_of(one.servers, [&](const String& each) { return other.servers.contains(each); });
}

bool isSame(const SchoolPlace& one, const SchoolPlace& other)
{
    return shareServer(one, other) && std::ranges::find_first_of(one.names, other.names) != one.names.end();
}

} // namespace zv
