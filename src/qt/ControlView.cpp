#include "qt/ControlView.h"

#include "qt/QtKeys.h"
#include "qt/QtText.h"
#include "views/Names.h"

#include <QKeyEvent>
#include <QTextDocument>

namespace zv {

void ControlView::watch()
{
    widget().setObjectName(toQt(control().fullName()));
    widget().setAttribute(Qt::WA_NoMousePropagation);
    // No click focus by the toolkit: a click gives the focus through the acts.
    input().setFocusPolicy(control().takesFocus() ? Qt::TabFocus : Qt::NoFocus);
    input().installEventFilter(this);
}

void ControlView::followPlace()
{
    const Control& c = control();
    widget().setGeometry(window_.placeOf(c));
    widget().setEnabled(c.Enabled());
    widget().setVisible(c.Visible());
    const QString tip = toQt(c.ToolTipText());
    widget().setToolTip(Qt::mightBeRichText(tip) ? tip.toHtmlEscaped() : tip);
}

void ControlView::name()
{
    if (const QString name = toQt(accessibleNameOf(control())); !name.isEmpty())
        input().setAccessibleName(name);
    describe(toQt(accessibleDescriptionOf(control())));
}

void ControlView::describe(const QString& text)
{
    if (input().accessibleDescription() != text)
        input().setAccessibleDescription(text);
}

void ControlView::later(const std::function<void()>& what)
{
    const auto ifThere = [this, what] {
        if (window_.alive())
            what();
    };
    QMetaObject::invokeMethod(this, ifThere, Qt::QueuedConnection);
}

bool ControlView::press(const Keystroke& key)
{
    pressKey(key);
    return true;
}

bool ControlView::eventFilter(QObject* watched, QEvent* event)
{
    return window_.alive() && filtered(*watched, *event);
}

bool ControlView::filtered(QObject& watched, QEvent& event)
{
    // A frame gets the keys that a field in it did not want; they are no act on the frame.
    if (event.type() == QEvent::KeyPress && &watched == &input() && control().takesFocus()) {
        flush();
        const auto& pressed = dynamic_cast<QKeyEvent&>(event);
        if (window_.pressOwn(pressed))
            return true;
        if (const auto key = keystrokeOf(pressed))
            return press(*key);
        if (asksForHelp(pressed)) {
            window_.help();
            return true;
        }
    }
    if (event.type() == QEvent::FocusIn && &watched == &input() && !window_.busy())
        later([this] { window_.takeFocusOver(*this); });
    return handle(watched, event);
}

} // namespace zv
