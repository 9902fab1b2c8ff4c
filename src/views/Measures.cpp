#include "views/Measures.h"

#include <algorithm>
#include <cmath>

namespace zv {

namespace {

constexpr Long smallestFont = 140;

} // namespace

int Scale::pixels(Long twips) const
{
    return static_cast<int>(std::lround(static_cast<double>(twips) * pixelsPerInch_ / twipsPerInch));
}

Long Scale::twips(int pixels) const
{
    return static_cast<Long>(std::lround(static_cast<double>(pixels) * twipsPerInch / pixelsPerInch_));
}

int fittingLetters(const Scale& scale, const std::function<LetterSize(int pixels)>& measure)
{
    const int widest = scale.pixels(letterWidth * static_cast<Long>(ordinaryLetters.size()));
    const int highest = scale.pixels(lineHeight);
    const int least = scale.pixels(smallestFont);
    for (int size = scale.pixels(largestFont); size > least; --size)
        if (const LetterSize letters = measure(size); letters.height <= highest && letters.width <= widest)
            return size;
    return least;
}

ScrollBars scrollBars(Extent whole, Extent room, Extent bar)
{
    const bool wide = whole.width > room.width;
    const bool high = whole.height > room.height;
    return {.across = wide || (high && whole.width + bar.width > room.width),
            .down = high || (wide && whole.height + bar.height > room.height)};
}

int within(int at, int size, int from, int to) { return std::clamp(at, from, std::max(from, to - size)); }

} // namespace zv
