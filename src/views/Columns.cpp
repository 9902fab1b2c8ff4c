#include "views/Columns.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace zv {

namespace {

int sum(const std::vector<int>& widths) { return std::accumulate(widths.begin(), widths.end(), 0); }

/// Takes from the widest of those that are wider than they have to be, until all fit.
void giveWay(std::vector<int>& widths, const std::vector<int>& least, int room)
{
    int total = sum(widths);
    while (total > room) {
        std::size_t widest = widths.size();
        for (std::size_t i = 0; i < widths.size(); ++i)
            if (widths[i] > least[i] && (widest == widths.size() || widths[i] > widths[widest]))
                widest = i;
        if (widest == widths.size())
            return;
        const int gives =
            std::min({total - room, std::max(1, widths[widest] / 16), widths[widest] - least[widest]});
        widths[widest] -= gives;
        total -= gives;
    }
}

void spread(std::vector<int>& widths, int natural, int room)
{
    for (int& each : widths)
        each = each * room / std::max(1, natural);
}

} // namespace

std::vector<int> columnsIn(const std::vector<ColumnNeed>& needs, int room)
{
    std::vector<int> widths;
    std::vector<int> least;
    for (const ColumnNeed& each : needs) {
        widths.push_back(each.texts);
        least.push_back(std::max(each.title, std::min(each.texts, each.letters)));
    }
    if (widths.empty())
        return widths;
    giveWay(widths, least, room);
    const int total = sum(widths);
    if (total >= room)
        return widths;
    spread(widths, total, room);
    widths.back() += room - sum(widths);
    return widths;
}

std::vector<int> columnWidths(std::vector<int> model, const std::vector<double>& shares, int room,
                              const std::function<std::vector<ColumnNeed>()>& needs, int lastTitle)
{
    std::vector<int> all = std::move(model);
    if (all.empty())
        return all;
    const int natural = sum(all);
    if (shares.size() == all.size()) {
        std::ranges::transform(shares, all.begin(),
                               [&](double share) { return static_cast<int>(std::lround(share * room)); });
    } else if (natural <= room) {
        spread(all, natural, room);
        const std::vector<ColumnNeed> needed = needs();
        if (!std::ranges::equal(needed, all, std::less_equal(), &ColumnNeed::texts))
            all = columnsIn(needed, room);
    }
    const int others = sum(all) - all.back();
    all.back() = std::max(room - others, natural > room ? all.back() : lastTitle);
    return all;
}

} // namespace zv
