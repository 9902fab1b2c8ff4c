#pragma once

#include <QPalette>

namespace zv {

/// Contrast ratio of two opaque colours as WCAG 2.1 defines it: 1 (the same) to 21 (black on white).
double contrastOf(const QColor& one, const QColor& other);

/// That palette with the texts of locked fields as legible as texts have to be: at least 4.5 to 1 on what is
/// behind them. They stay paler than those that can be changed, where the palette leaves room for it.
QPalette legible(QPalette palette);
/// The same for a field that styles draw as a button: a closed list.
QPalette legibleOnButton(QPalette palette);

} // namespace zv
