#include "qt/Zoom.h"

#include <QSettings>

namespace zv {

namespace {

const QString key = QStringLiteral("zoom");

/// The module's own settings, whichever program it is loaded into.
QSettings settings() { return QSettings(QStringLiteral("ZVConfiguracion"), QStringLiteral("ventanas")); }

} // namespace

void Zoom::remember()
{
    Magnification::remember(settings().value(key).toInt(),
                            [](int percent) { settings().setValue(key, percent); });
}

bool Zoom::press(const QKeyEvent& event)
{
    // On some keyboards + stands over another sign.
    const Qt::KeyboardModifiers held = event.modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier);
    if (held != Qt::ControlModifier)
        return false;
    switch (event.key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        change(Change::larger);
        break;
    case Qt::Key_Minus:
    case Qt::Key_Underscore:
        change(Change::smaller);
        break;
    case Qt::Key_0:
        change(Change::usual);
        break;
    default:
        return false;
    }
    return true;
}

} // namespace zv
