#pragma once

class QPushButton;
class QWidget;

namespace zv {

/// Gives a field, list, tick or option the desktop's style with an edge that stands out: the style's own does
/// not in every palette. Of what scrolls, list or area, it shows the focus; and of a field to which no dialog
/// gives a ring.
void drawEdge(QWidget& widget);
/// The same for every field, list, area and tick of a window that takes the focus.
void drawEdges(QWidget& window);

/// Keeps a text that fills its button away from the edges.
void giveRoom(QPushButton& button);

} // namespace zv
