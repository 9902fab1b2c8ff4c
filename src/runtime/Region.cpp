#include "runtime/Region.h"

#include "runtime/System.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace zv {

namespace {

/// Languages with a decimal point, and countries with one where the language has a comma.
constexpr std::array<std::string_view, 8> pointLanguages{"en", "zh", "ja", "ko", "th", "he", "ga", "mt"};
constexpr std::array<std::string_view, 12> pointPlaces{"es_MX", "es_US", "es_PR", "es_GT", "es_HN", "es_NI",
                                                       "es_PA", "es_PE", "es_SV", "es_DO", "de_CH", "it_CH"};

Region regionOfEnvironment()
{
    for (const char* name : {"LC_ALL", "LC_NUMERIC", "LANG"}) {
        const std::optional<std::string> value = environment(name);
        if (value && !value->empty())
            return regionOfLocale(*value);
    }
    return chosenDecimalMark() == u'.' ? pointRegion : spanishRegion;
}

std::optional<Region>& current()
{
    static std::optional<Region> settings;
    return settings;
}

} // namespace

const Region& region()
{
    if (!current())
        current() = regionOfEnvironment();
    return *current();
}

void useRegion(Region settings) { current() = settings; }

Region regionOfLocale(std::string_view localeName)
{
    const std::string_view place = localeName.substr(0, localeName.find_first_of(".@"));
    const std::string_view language = place.substr(0, place.find('_'));
    const bool point =
        std::find(pointLanguages.begin(), pointLanguages.end(), language) != pointLanguages.end() ||
        std::find(pointPlaces.begin(), pointPlaces.end(), place) != pointPlaces.end();
    return point ? pointRegion : spanishRegion;
}

} // namespace zv
