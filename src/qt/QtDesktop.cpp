#include "qt/QtDesktop.h"

#include "qt/Help.h"
#include "qt/MessageAid.h"
#include "qt/QtText.h"

#include <QApplication>
#include <QMessageBox>
#include <QShortcut>
#include <QTimer>

namespace zv {

namespace {

constexpr int signBits = 112;

QMessageBox::Icon signOf(int flags)
{
    switch (flags & signBits) {
    case sign::critical:
        return QMessageBox::Critical;
    case sign::exclamation:
        return QMessageBox::Warning;
    case sign::information:
        return QMessageBox::Information;
    default:
        return QMessageBox::NoIcon;
    }
}

} // namespace

QtDesktop::~QtDesktop()
{
    if (waits())
        QApplication::restoreOverrideCursor();
    endAll();
}

QWidget* QtDesktop::front() const
{
    for (auto each = windows().rbegin(); each != windows().rend(); ++each)
        if (each->window->isVisible())
            return each->window.get();
    return QApplication::activeWindow();
}

std::unique_ptr<FormWindow> QtDesktop::make(Form& form)
{
    return std::make_unique<FormWindow>(form, front(), helps() ? &zoom_ : nullptr);
}

void QtDesktop::runModal(Form& form)
{
    if (windowOf(form) == nullptr)
        return;
    WindowDesktop::runModal(form);
    // A question and its dialog that go at once leave some desktops without a window that has the keyboard.
    if (QWidget* below = front(); below != nullptr)
        below->activateWindow();
}

void QtDesktop::runWindow(FormWindow& window)
{
    QTimer minute;
    minute.callOnTimeout([] { waiting(); });
    minute.start(std::chrono::minutes(1));
    window.run();
}

void QtDesktop::tell(Integer flags, StringView title, StringView text)
{
    ++told_;
    QMessageBox box(signOf(flags), toQt(title), toQt(text), QMessageBox::NoButton, front());
    box.setTextFormat(Qt::PlainText);
    box.addButton(QStringLiteral("Aceptar"), QMessageBox::AcceptRole);
    const QShortcut help(Qt::Key_F1, &box, [&] { showHelp(box, QStringLiteral("mensajes"), toQt(text)); });
    QWidget* window = front();
    if (window != nullptr)
        placeBeside(box, *window);
    ask(box);
    if (auto* form = dynamic_cast<FormWindow*>(window))
        tintEmpty(*form);
}

void QtDesktop::ask(QMessageBox& box) { box.exec(); }

void QtDesktop::beep() { QApplication::beep(); }

void QtDesktop::repaint() { QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents); }

void QtDesktop::showPointer(bool waits)
{
    if (waits)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QApplication::restoreOverrideCursor();
}

} // namespace zv
