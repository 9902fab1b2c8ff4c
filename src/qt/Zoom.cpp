#include "qt/Zoom.h"

#include <QSettings>

#include <algorithm>

namespace zv {

namespace {

constexpr int usual = 100;
constexpr int step = 10;
constexpr int least = 60;
constexpr int most = 300;
const QString key = QStringLiteral("zoom");

/// The module's own settings, whichever program it is loaded into.
QSettings settings() { return QSettings(QStringLiteral("ZVConfiguracion"), QStringLiteral("ventanas")); }

} // namespace

void Zoom::remember()
{
    remembered_ = true;
    percent_ = std::clamp(settings().value(key, usual).toInt(), least, most);
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
        percent_ = std::min(percent_ + step, most);
        break;
    case Qt::Key_Minus:
    case Qt::Key_Underscore:
        percent_ = std::max(percent_ - step, least);
        break;
    case Qt::Key_0:
        percent_ = usual;
        break;
    default:
        return false;
    }
    if (remembered_)
        settings().setValue(key, percent_);
    return true;
}

} // namespace zv
