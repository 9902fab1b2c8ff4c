#include "qt/Legible.h"

#include <algorithm>
#include <cmath>

namespace zv {

namespace {

/// WCAG 2.1 and EN 301 549 ask for 4.5 of texts of ordinary size. Smoothed edges and shaded backgrounds take
/// some.
constexpr double leastContrast = 5.2;

double luminance(const QColor& color)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

/// Whether white stands out from it more than black does.
bool isDark(const QColor& color) { return luminance(color) < 0.18; }

/// The colour that lies at that share of the way from one to the other.
QColor between(const QColor& one, const QColor& other, double share)
{
    const auto mixed = [share](double from, double to) {
        return static_cast<float>(from + (to - from) * share);
    };
    return QColor::fromRgbF(mixed(one.redF(), other.redF()), mixed(one.greenF(), other.greenF()),
                            mixed(one.blueF(), other.blueF()));
}

/// The text colour, moved away from the background no further than it takes.
QColor legibleOn(const QColor& back, const QColor& text)
{
    const QColor furthest = isDark(back) ? Qt::white : Qt::black;
    constexpr int steps = 20;
    for (int step = 0; step < steps; ++step) {
        const QColor candidate = between(text, furthest, static_cast<double>(step) / steps);
        if (contrastOf(candidate, back) >= leastContrast)
            return candidate;
    }
    return furthest;
}

void contrast(QPalette& palette, QPalette::ColorRole text, QPalette::ColorRole back)
{
    constexpr auto locked = QPalette::Disabled;
    palette.setColor(locked, text, legibleOn(palette.color(locked, back), palette.color(locked, text)));
}

} // namespace

double contrastOf(const QColor& one, const QColor& other)
{
    const auto [dark, light] = std::minmax({luminance(one), luminance(other)});
    return (light + 0.05) / (dark + 0.05);
}

QPalette legible(QPalette palette)
{
    contrast(palette, QPalette::Text, QPalette::Base);
    contrast(palette, QPalette::WindowText, QPalette::Window);
    return palette;
}

QPalette legibleOnButton(QPalette palette)
{
    // Styles light a button from above: by a quarter at most.
    constexpr int lit = 125;
    const QColor color = palette.color(QPalette::Disabled, QPalette::Button);
    palette.setColor(QPalette::Disabled, QPalette::ButtonText,
                     legibleOn(isDark(color) ? color.lighter(lit) : color,
                               palette.color(QPalette::Disabled, QPalette::ButtonText)));
    return palette;
}

} // namespace zv
