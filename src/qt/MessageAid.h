#pragma once

class QWidget;

namespace zv {

class FormWindow;

/// What a window does about a message box over it, of itself: the dialogs know nothing of it.

/// Places the box beside the window, where the screen has room, so that it covers no field; else in the
/// screen's lower right corner.
void placeBeside(QWidget& box, const QWidget& window);
/// Tints the mandatory fields that are empty; each until something stands in it.
void tintEmpty(FormWindow& window);

} // namespace zv
