#include "qt/stage/StageDesktop.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QScopedValueRollback>
#include <QTimer>

#include <utility>

namespace zv {

void StageDesktop::opened(Form& form)
{
    QtDesktop::opened(form);
    play_.opened(form);
}

void StageDesktop::closed(Form& form)
{
    QtDesktop::closed(form);
    play_.closed(form);
}

void StageDesktop::messageBox(StringView prompt, Integer flags, StringView title)
{
    play_.messageBox(prompt, flags, title);
    QtDesktop::messageBox(prompt, flags, title);
}

void StageDesktop::beep() { play_.beep(); }

void StageDesktop::doEvents()
{
    play_.repainted();
    QtDesktop::doEvents();
}

void StageDesktop::changed(PropertyOwner& owner, const PropertyBase* property)
{
    play_.changed(owner, property);
    QtDesktop::changed(owner, property);
}

void StageDesktop::handlerFailed(const RuntimeError& error)
{
    play_.failed(error);
    QtDesktop::handlerFailed(error);
}

void StageDesktop::ask(QMessageBox& box)
{
    box.show();
    breathe();
}

void StageDesktop::breathe()
{
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    if (pace_.count() == 0)
        return;
    QEventLoop pause;
    QTimer::singleShot(pace_, &pause, &QEventLoop::quit);
    pause.exec(QEventLoop::ExcludeUserInputEvents);
}

void StageDesktop::runWindow(FormWindow& window)
{
    window.ready();
    breathe();
    try {
        play_.goOnWhileOpen(window.form());
    } catch (...) {
        if (acting_ == 0)
            throw;
        mistake_ = std::current_exception();
    }
}

void StageDesktop::acting(const std::function<void()>& events)
{
    {
        const QScopedValueRollback deeper(acting_, acting_ + 1);
        events();
    }
    breathe();
    if (mistake_)
        std::rethrow_exception(std::exchange(mistake_, nullptr));
}

} // namespace zv
