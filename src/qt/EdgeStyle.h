#pragma once

class QWidget;

namespace zv {

/// Gives a field, list, tick or option the desktop's style with an edge that stands out: the style's own does
/// not in every palette. Of what scrolls, list or area, it shows the focus.
void drawEdge(QWidget& widget);
/// The same for every list, area and tick of a window that takes the focus; the desktop's own frame shows it
/// in fields.
void drawEdges(QWidget& window);

} // namespace zv
