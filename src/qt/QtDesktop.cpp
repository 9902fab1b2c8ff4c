#include "qt/QtDesktop.h"

#include "journal/Recorder.h"
#include "qt/Help.h"
#include "qt/MessageAid.h"
#include "qt/QtText.h"

#include <QApplication>
#include <QMessageBox>
#include <QScopedValueRollback>
#include <QShortcut>
#include <QTimer>

#include <algorithm>

namespace zv {

namespace {

constexpr Integer hourglass = 11;
constexpr int signBits = 112;
constexpr int criticalSign = 16;

QMessageBox::Icon signOf(int flags)
{
    switch (flags & signBits) {
    case criticalSign:
        return QMessageBox::Critical;
    case 48:
        return QMessageBox::Warning;
    case 64:
        return QMessageBox::Information;
    default:
        return QMessageBox::NoIcon;
    }
}

} // namespace

QtDesktop::~QtDesktop()
{
    if (!waiting_.empty())
        QApplication::restoreOverrideCursor();
    if (keeps_)
        journal::onTrouble({});
    // Detached first: the forms may be destroyed already.
    for (Shown& each : windows_) {
        each.window->end();
        gone_.push_back(std::move(each));
    }
    sweep(0);
}

FormWindow* QtDesktop::windowOf(const Form& form) const
{
    for (const Shown& each : windows_)
        if (&each.window->form() == &form)
            return each.window.get();
    return nullptr;
}

void QtDesktop::keepDrafts()
{
    if (!journal::record())
        return;
    keeps_ = true;
    journal::onTrouble([this](StringView why) {
        trouble_ = toQt(why);
        for (const Shown& each : windows_)
            each.drafts->tell();
    });
}

bool QtDesktop::keptDrafts() const
{
    return windows_.empty() || (journal::recording() && std::ranges::all_of(windows_, [](const Shown& each) {
                                    return journal::recorder().sync(each.window->form());
                                }));
}

QWidget* QtDesktop::front() const
{
    for (auto each = windows_.rbegin(); each != windows_.rend(); ++each)
        if (each->window->isVisible())
            return each->window.get();
    return QApplication::activeWindow();
}

void QtDesktop::opened(Form& form)
{
    forget(form);
    auto window = std::make_unique<FormWindow>(form, front(), helps() ? &zoom_ : nullptr);
    auto drafts = std::make_unique<DraftAid>(*window, trouble_);
    windows_.push_back({std::move(window), depth_, std::move(drafts)});
    if (helps() && journal::recording())
        windows_.back().drafts->offer();
    windows_.back().window->show();
}

void QtDesktop::runModal(Form& form)
{
    FormWindow* window = windowOf(form);
    if (window == nullptr)
        return;
    const int depth = depth_;
    {
        const QScopedValueRollback deeper(depth_, depth + 1);
        runWindow(*window);
    }
    if (!form.Visible())
        forget(form);
    sweep(depth);
    // What has been taken note of in the other window.
    for (const Shown& each : windows_)
        each.drafts->tell();
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

void QtDesktop::closed(Form& form) { forget(form); }

void QtDesktop::forget(const Form& form)
{
    const auto found =
        std::ranges::find_if(windows_, [&](const Shown& each) { return &each.window->form() == &form; });
    if (found == windows_.end())
        return;
    found->window->end();
    gone_.push_back(std::move(*found));
    windows_.erase(found);
    followPointer(form);
}

void QtDesktop::sweep(int depth)
{
    // Children first: a window may be the parent of those opened after it.
    std::ranges::stable_sort(gone_, {}, &Shown::depth);
    while (!gone_.empty() && gone_.back().depth >= depth)
        gone_.pop_back();
}

void QtDesktop::messageBox(StringView prompt, Integer flags, StringView title) { tell(flags, title, prompt); }

void QtDesktop::handlerFailed(const RuntimeError& error)
{
    tell(criticalSign, u"Error " + decimalText(error.number()),
         u"La operación no ha terminado: " + error.description());
}

void QtDesktop::tell(int flags, StringView title, StringView text)
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

void QtDesktop::doEvents()
{
    for (const Shown& each : windows_)
        if (each.window->alive())
            each.window->inStep();
    // No re-entrant acts: a person's input waits until the routine in hand has ended.
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void QtDesktop::working()
{
    for (const Shown& each : windows_)
        each.window->working();
}

Long QtDesktop::textWidth(StringView text)
{
    if (windows_.empty())
        return Desktop::textWidth(text);
    const FormWindow& window = *windows_.back().window;
    return window.twips(window.fontMetrics().horizontalAdvance(toQt(text)));
}

void QtDesktop::followPointer(const Form& form)
{
    const bool waited = !waiting_.empty();
    if (form.MousePointer() == hourglass)
        waiting_.insert(&form);
    else
        waiting_.erase(&form);
    if (waited && waiting_.empty())
        QApplication::restoreOverrideCursor();
    else if (!waited && !waiting_.empty())
        QApplication::setOverrideCursor(Qt::WaitCursor);
}

void QtDesktop::changed(PropertyOwner& owner, const PropertyBase* property)
{
    auto* control = dynamic_cast<Control*>(&owner);
    const Form& form = control != nullptr ? control->form() : dynamic_cast<const Form&>(owner);
    if (control == nullptr && property == &form.MousePointer)
        return followPointer(form);
    FormWindow* window = windowOf(form);
    if (window == nullptr || !window->alive())
        return;
    if (control != nullptr)
        window->controlChanged(*control, property);
    else if (property != nullptr)
        window->changed(*property);
}

} // namespace zv
