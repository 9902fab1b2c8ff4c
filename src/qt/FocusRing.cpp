#include "qt/FocusRing.h"

#include "qt/Legible.h"

#include <QPainter>

namespace zv {

void FocusRing::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.fillRect(rect(), focusColor(palette()));
}

} // namespace zv
