#pragma once

class QWidget;

namespace zv {

/// Gives a field, list, tick or option the desktop's style with an edge that stands out: the style's own does
/// not in every palette. Of what scrolls, list or area, it shows the focus.
void drawEdge(QWidget& widget);

} // namespace zv
