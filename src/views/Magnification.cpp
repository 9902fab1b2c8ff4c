#include "views/Magnification.h"

#include <algorithm>
#include <utility>

namespace zv {

namespace {

constexpr int usualPercent = 100;
constexpr int step = 10;
constexpr int least = 60;
constexpr int most = 300;

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
    return std::max(1.0, std::min(letters, std::min(across, down))) * percent / usualPercent;
}

} // namespace zv
