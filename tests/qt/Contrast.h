#pragma once

#include "qt/Legible.h"

#include <QApplication>
#include <QWidget>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>

namespace zv::test {

/// EN 301 549 asks for so much of a text of ordinary size, and for the other of what is no text.
constexpr double leastOfTexts = 4.5;
constexpr double leastOfSigns = 3;

/// Contrast of what stands out most from the commonest colour of a picture.
inline double contrastIn(const QImage& picture)
{
    std::map<QRgb, int> count;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            ++count[picture.pixel(x, y)];
    const auto commonest = std::ranges::max_element(count, {}, &std::pair<const QRgb, int>::second);
    double most = 1;
    for (const auto& [color, times] : count)
        most = std::max(most, contrastOf(QColor(color), QColor(commonest->first)));
    return most;
}

/// Contrast of what changed most between two pictures of the same place.
inline double contrastBetween(const QImage& one, const QImage& other)
{
    double most = 1;
    for (int y = 0; y < one.height(); ++y)
        for (int x = 0; x < one.width(); ++x)
            most = std::max(most, contrastOf(one.pixelColor(x, y), other.pixelColor(x, y)));
    return most;
}

/// A text that is measured: the part of the widget in which it is drawn.
struct Drawn {
    const char* name;
    QWidget& widget;
    QRect part;
};

inline void expectLegible(const Drawn& text)
{
    const double contrast = contrastIn(text.widget.grab(text.part).toImage());
    EXPECT_GE(contrast, leastOfTexts)
        << text.name << " on " << QApplication::palette().color(QPalette::Window).name().toStdString();
}

/// Runs a function under each palette: the desktop's own, light, dark, and a dark one with other highlights.
inline void underEachPalette(const std::function<void()>& what)
{
    const QPalette before = QApplication::palette();
    QPalette night(QColor(45, 45, 48));
    night.setColor(QPalette::Base, QColor(30, 30, 32));
    night.setColor(QPalette::Highlight, QColor(42, 110, 190));
    for (const QPalette& palette : {before, QPalette(Qt::white), QPalette(QColor(45, 45, 48)), night}) {
        QApplication::setPalette(palette);
        QApplication::processEvents();
        what();
    }
    QApplication::setPalette(before);
    QApplication::processEvents();
}

} // namespace zv::test
