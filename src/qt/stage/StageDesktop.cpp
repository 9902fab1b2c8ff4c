#include "qt/stage/StageDesktop.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QTimer>

namespace zv {

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

/// The window below gets the keyboard back by an event, which a person's next act would find done.
void StageDesktop::runModal(Form& form)
{
    Reporting::runModal(form);
    breathe();
}

void StageDesktop::runWindow(FormWindow& window)
{
    window.ready();
    breathe();
    goOn(window.form());
}

} // namespace zv
