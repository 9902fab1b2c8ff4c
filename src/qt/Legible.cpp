#include "qt/Legible.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <memory>

namespace zv {

namespace {

/// WCAG 2.1 and EN 301 549 ask for 4.5 of texts of ordinary size. Smoothed edges and shaded backgrounds take
/// some.
constexpr double leastContrast = 5.8;
/// And 3 of what is no text, which has no smoothed edges to speak of.
constexpr double leastOfSigns = 3.3;

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
QColor legibleOn(const QColor& back, const QColor& text, double least = leastContrast)
{
    const QColor furthest = isDark(back) ? Qt::white : Qt::black;
    constexpr int steps = 20;
    for (int step = 0; step < steps; ++step) {
        const QColor candidate = between(text, furthest, static_cast<double>(step) / steps);
        if (contrastOf(candidate, back) >= least)
            return candidate;
    }
    return furthest;
}

void contrast(QPalette& palette, QPalette::ColorRole text, const QColor& back)
{
    constexpr auto locked = QPalette::Disabled;
    palette.setColor(locked, text, legibleOn(back, palette.color(locked, text)));
}

/// Observer of the application's palette.
class Keeper final : public QObject {
public:
    using QObject::QObject;
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::ApplicationPaletteChange)
            if (auto* window = qobject_cast<QWidget*>(watched))
                window->setPalette(legible(QApplication::palette(window)));
        return false;
    }
};

} // namespace

double contrastOf(const QColor& one, const QColor& other)
{
    const auto [dark, light] = std::minmax({luminance(one), luminance(other)});
    return (light + 0.05) / (dark + 0.05);
}

QPalette legible(QPalette palette)
{
    constexpr auto locked = QPalette::Disabled;
    // Styles light a button from above, by a quarter at most, and shade the tabs behind the first.
    constexpr int lit = 125;
    constexpr int shaded = 110;
    const QColor button = palette.color(locked, QPalette::Button);
    const QColor window = palette.color(locked, QPalette::Window);
    contrast(palette, QPalette::Text, palette.color(locked, QPalette::Base));
    contrast(palette, QPalette::WindowText, isDark(window) ? window : window.darker(shaded));
    contrast(palette, QPalette::ButtonText, isDark(button) ? button.lighter(lit) : button);
    for (const auto group : {QPalette::Active, QPalette::Inactive, locked}) {
        const QColor base = palette.color(group, QPalette::Base);
        const QColor pale = palette.color(group, QPalette::PlaceholderText);
        palette.setColor(group, QPalette::PlaceholderText,
                         legibleOn(base, between(base, pale, static_cast<double>(pale.alphaF()))));
        for (const auto role : {QPalette::Link, QPalette::LinkVisited})
            palette.setColor(group, role, legibleOn(base, palette.color(group, role)));
        // The ground gives way: selected texts have one colour everywhere.
        palette.setColor(group, QPalette::Highlight,
                         legibleOn(palette.color(group, QPalette::HighlightedText),
                                   palette.color(group, QPalette::Highlight)));
    }
    return palette;
}

void keepLegible(QWidget& window)
{
    window.setPalette(legible(QApplication::palette(&window)));
    window.installEventFilter(std::make_unique<Keeper>(&window).release());
}

QColor focusColor(const QPalette& palette)
{
    return legibleOn(palette.color(QPalette::Window), palette.color(QPalette::Highlight));
}

QColor edgeColor(const QPalette& palette)
{
    const QColor window = palette.color(QPalette::Window);
    return legibleOn(window, window, leastOfSigns);
}

} // namespace zv
