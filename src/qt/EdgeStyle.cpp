#include "qt/EdgeStyle.h"

#include "qt/Legible.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPainter>
#include <QProxyStyle>
#include <QPushButton>
#include <QScrollArea>
#include <QStyleOption>
#include <QWidget>

#include <memory>

namespace zv {

namespace {

constexpr int focusWidth = 2;

bool scrolls(const QWidget* widget)
{
    return qobject_cast<const QAbstractItemView*>(widget) != nullptr ||
           qobject_cast<const QScrollArea*>(widget) != nullptr;
}

class EdgeStyle final : public QProxyStyle {
public:
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override
    {
        // Of the lists and areas that scroll: room for what shows the focus.
        if (metric == PM_DefaultFrameWidth && scrolls(widget))
            return focusWidth;
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
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
        // A field that a click gives the focus has no ring around it, which a dialog's has.
        const bool alone =
            element == PE_FrameLineEdit && widget != nullptr && (widget->focusPolicy() & Qt::ClickFocus) != 0;
        const bool focused =
            option->state.testFlag(State_HasFocus) && (alone || (element == PE_Frame && scrolls(widget)));
        painter->setPen(focused ? QPen(focusColor(option->palette), focusWidth)
                                : QPen(edgeColor(option->palette)));
        painter->setBrush(Qt::NoBrush);
        const double half = painter->pen().widthF() / 2;
        const QRectF edge = QRectF(option->rect).adjusted(half, half, -half, -half);
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

void drawEdges(QWidget& window)
{
    for (QWidget* each : window.findChildren<QWidget*>())
        if (each->focusPolicy() != Qt::NoFocus &&
            (scrolls(each) || qobject_cast<QCheckBox*>(each) != nullptr ||
             qobject_cast<QLineEdit*>(each) != nullptr || qobject_cast<QComboBox*>(each) != nullptr))
            drawEdge(*each);
}

void giveRoom(QPushButton& button)
{
    constexpr int letters = 3;
    const QFontMetrics font = button.fontMetrics();
    button.setMinimumWidth(font.horizontalAdvance(button.text()) + letters * font.averageCharWidth());
}

} // namespace zv
