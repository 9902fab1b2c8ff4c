#include "views/Magnification.h"

#include <algorithm>
#include <utility>

namespace zv {

namespace {

constexpr int usualPercent = 100;
constexpr int step = 10;
constexpr int least = 60;
constexpr int most = 300;
/// To which a dialog shrinks by itself, rather than be cut by the edge of the screen.
constexpr double smallest = 0.85;

} // namespace

void Magnification::remember(int last, std::function<void(int percent)> keep)
{
    if (last > 0)
        percent_ = std::clamp(last, least, most);
    keep_ = std::move(keep);
}

void Magnification::change(Change change)
{
    const int wanted = change == Change::usual    ? usualPercent
                       : change == Change::larger ? percent_ + step
                                                  : percent_ - step;
    percent_ = std::clamp(wanted, least, most);
    if (keep_)
        keep_(percent_);
}

double magnified(double letters, double across, double down, int percent)
{
    const double room = std::min(across, down);
    const double fits = room < smallest ? 1.0 : std::min(std::max(1.0, letters), room);
    return fits * percent / usualPercent;
}

} // namespace zv
