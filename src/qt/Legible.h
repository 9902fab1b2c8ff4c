#pragma once

#include <QPalette>

class QWidget;

namespace zv {

/// Contrast of two colours as WCAG 2.1 counts it, from 1 to 21.
double contrastOf(const QColor& one, const QColor& other);

/// The palette with what does not stand out enough moved away from its background: what is disabled, links,
/// what a field says of itself, what is selected.
QPalette legible(QPalette palette);

/// Gives the window the application's palette, made legible, and again whenever that changes.
void keepLegible(QWidget& window);

/// Colour of a frame on a window's background that shows where the focus is.
QColor focusColor(const QPalette& palette);

/// Colour of the edge of a field on a window's background.
QColor edgeColor(const QPalette& palette);

} // namespace zv
