#include "data/Engine.h"

#include <algorithm>

namespace zv {
namespace {

std::vector<std::unique_ptr<Engine>>& engines()
{
    static std::vector<std::unique_ptr<Engine>> known;
    return known;
}

auto engineNamed(StringView scheme)
{
    return std::ranges::find_if(engines(),
                                [&](const auto& engine) { return sameName(engine->scheme(), scheme); });
}

StringView schemeOf(StringView url)
{
    const std::size_t colon = url.find(u':');
    return colon == StringView::npos ? StringView() : url.substr(0, colon);
}

} // namespace

std::filesystem::path fileOf(const std::filesystem::path& live, Database which)
{
    if (which == Database::centro || live.empty())
        return live;
    std::filesystem::path name = live.stem();
    name += which == Database::borrado ? u".borrado" : u".entrada";
    name += live.extension();
    return live.parent_path() / name;
}

void registerEngine(std::unique_ptr<Engine> engine)
{
    const auto known = engineNamed(engine->scheme());
    if (known == engines().end())
        engines().push_back(std::move(engine));
    else
        *known = std::move(engine);
}

Engine& engineOf(StringView url)
{
    const auto known = engineNamed(schemeOf(url));
    if (known != engines().end())
        return **known;
    String schemes;
    for (const auto& engine : engines())
        schemes += (schemes.empty() ? u"«" : u", «") + String(engine->scheme()) + u":»";
    throw RuntimeError(failure::otherData,
                       u"«" + String(url) + u"» no dice en qué motor está la base de datos; empiece por " +
                           (schemes.empty() ? String(u"(ninguno disponible)") : schemes) + u".");
}

StringView locationOf(StringView url)
{
    const std::size_t colon = url.find(u':');
    return colon == StringView::npos ? url : url.substr(colon + 1);
}

} // namespace zv
