#pragma once

#include "runtime/String.h"
#include "runtime/Value.h"

#include <functional>

/// Measures that windows take over from the forms, on every desktop.
namespace zv {

inline constexpr int twipsPerInch = 1440;
/// Metrics that the forms assume, in twips: 105 for an ordinary letter, 315 for the height of a field.
inline constexpr StringView ordinaryLetters = u"abcdeghknopqsuvxyz";
inline constexpr Long letterWidth = 105;
inline constexpr Long lineHeight = 255;
/// Of the line under a form, with the edge below it.
inline constexpr Long footHeight = lineHeight + 150;
/// Letters of the dialogs where they fit.
inline constexpr Long largestFont = 180;

/// Twips and pixels, at so many pixels to an inch.
class Scale {
public:
    explicit Scale(double pixelsPerInch = 96) : pixelsPerInch_(pixelsPerInch) {}
    int pixels(Long twips) const;
    Long twips(int pixels) const;

private:
    double pixelsPerInch_;
};

/// Height of a line, and width of `ordinaryLetters`, in pixels.
struct LetterSize {
    int height = 0;
    int width = 0;
};
/// Size of letters, in pixels, whose metrics fit the sizes that the forms give their controls: the largest
/// that does, or the smallest that can be read.
int fittingLetters(const Scale& scale, const std::function<LetterSize(int pixels)>& measure);

/// Which scroll bars a window has that shows a sheet of that size in so much room; a bar takes room itself.
struct ScrollBars {
    bool across = false;
    bool down = false;
};
struct Extent {
    int width = 0;
    int height = 0;
};
ScrollBars scrollBars(Extent whole, Extent room, Extent bar);

/// Where something of that size stands that is to stand at `at`, but not beyond the edges; at the first one
/// where there is no room.
int within(int at, int size, int from, int to);

} // namespace zv
