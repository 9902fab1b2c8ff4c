#include "data/Place.h"

#include <algorithm>
#include <initializer_list>
#include <map>

namespace zv {

String placeIn(StringView attributes)
{
    const std::initializer_list<StringView> besides = {u"espera",   u"servidores", u"pwd",
                                                       u"password", u"uid",        u"user"};
    std::map<String, String> found;
    while (!attributes.empty()) {
        const std::size_t end = std::min(attributes.find(u';'), attributes.size());
        const StringView each = attributes.substr(0, end);
        const std::size_t sign = std::min(each.find(u'='), each.size());
        const String name = lowerName(Trim(each.substr(0, sign)));
        if (!name.empty() && std::ranges::find(besides, StringView(name)) == besides.end())
            found.try_emplace(name, Trim(each.substr(std::min(sign + 1, each.size()))));
        attributes.remove_prefix(std::min(end + 1, attributes.size()));
    }
    String result;
    for (const auto& [name, value] : found)
        result.append(name).append(u"=").append(value).append(u";");
    return result;
}

} // namespace zv
