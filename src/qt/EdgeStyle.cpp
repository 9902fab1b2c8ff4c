#include "qt/EdgeStyle.h"

#include "qt/Legible.h"

#include <QPainter>
#include <QProxyStyle>
#include <QStyleOption>
#include <QWidget>

#include <memory>

namespace zv {

namespace {

class EdgeStyle final : public QProxyStyle {
public:
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override
    {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        const bool circle = element == PE_IndicatorRadioButton;
        // A closed list is drawn as a button.
        const bool box = element == PE_IndicatorCheckBox || element == PE_FrameLineEdit ||
                         element == PE_Frame || element == PE_PanelButtonCommand;
        // What is off need not stand out.
        if ((!circle && !box) || !option->state.testFlag(State_Enabled))
            return;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(edgeColor(option->palette));
        painter->setBrush(Qt::NoBrush);
        const QRectF edge = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
        constexpr double rounded = 2;
        circle ? painter->drawEllipse(edge) : painter->drawRoundedRect(edge, rounded, rounded);
        painter->restore();
    }
};

} // namespace

void drawEdge(QWidget& widget)
{
    // One for each window, with which it goes: a host's application outlives this library.
    QWidget& window = *widget.window();
    auto* style = window.findChild<QProxyStyle*>(QString(), Qt::FindDirectChildrenOnly);
    if (style == nullptr) {
        style = std::make_unique<EdgeStyle>().release();
        style->setParent(&window);
    }
    widget.setStyle(style);
}

} // namespace zv
