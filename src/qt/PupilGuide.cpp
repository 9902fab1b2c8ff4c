#include "qt/PupilGuide.h"

#include "forms/ComboBox.h"
#include "qt/QtKeys.h"
#include "qt/QtText.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPushButton>

#include <optional>

namespace zv {

namespace {

using Macro = bool (*)(SectionKeys&, Acts&);

struct Chord {
    int key = 0;
    Qt::KeyboardModifiers held;
    Macro macro = nullptr;
};

constexpr Qt::KeyboardModifiers withControl = Qt::ControlModifier;
constexpr Qt::KeyboardModifiers withBoth = Qt::ControlModifier | Qt::ShiftModifier;
constexpr Macro nextPage = [](SectionKeys& keys, Acts& acts) { return keys.goToPage(acts, 1); };
constexpr Macro pageBefore = [](SectionKeys& keys, Acts& acts) { return keys.goToPage(acts, -1); };
constexpr Macro nextPupil = [](SectionKeys& keys, Acts& acts) { return keys.goToPupil(acts, 1); };
constexpr Macro pupilBefore = [](SectionKeys& keys, Acts& acts) { return keys.goToPupil(acts, -1); };
constexpr Macro repeatAbove = [](SectionKeys& keys, Acts& acts) { return keys.repeatAbove(acts); };
constexpr Macro clear = [](SectionKeys& keys, Acts& acts) { return keys.clear(acts); };
constexpr Macro goDown = [](SectionKeys& keys, Acts& acts) { return keys.leaveList(acts, true); };
constexpr Macro goBack = [](SectionKeys& keys, Acts& acts) { return keys.leaveList(acts, false); };

/// None of them means anything else in a dialog or on the desktops that were looked at.
constexpr Chord chords[] = {
    {Qt::Key_Tab, withControl, nextPage},
    {Qt::Key_Backtab, withBoth, pageBefore},
    {Qt::Key_Tab, withBoth, pageBefore},
    {Qt::Key_PageDown, withControl, nextPage},
    {Qt::Key_PageUp, withControl, pageBefore},
    {Qt::Key_PageDown, Qt::AltModifier, nextPupil},
    {Qt::Key_PageUp, Qt::AltModifier, pupilBefore},
    {Qt::Key_D, withControl, repeatAbove},
    {Qt::Key_Delete, Qt::NoModifier, clear},
    {Qt::Key_Return, Qt::NoModifier, goDown},
    {Qt::Key_Enter, Qt::NoModifier, goDown},
    {Qt::Key_Tab, Qt::NoModifier, goDown},
    {Qt::Key_Backtab, Qt::ShiftModifier, goBack},
};

/// Times after which a save begins to tell of itself, and tells again, in milliseconds.
constexpr qint64 noticeable = 300;
constexpr qint64 again = 100;

QString counted(std::size_t pupils)
{
    return pupils == 1 ? QStringLiteral("1 alumno") : QStringLiteral("%1 alumnos").arg(pupils);
}

} // namespace

PupilGuide::PupilGuide(Form& form, QWidget& window) : controls_(form), line_(&window)
{
    line_.setObjectName(QStringLiteral("progreso"));
    line_.setTextFormat(Qt::PlainText);
    line_.setVisible(isSection());
}

bool PupilGuide::press(const QKeyEvent& event, const Run& run)
{
    const Qt::KeyboardModifiers held = event.modifiers() & ~Qt::KeypadModifier;
    const auto with = [&](const auto& macro) { return run([&](Acts& acts) { return macro(keys_, acts); }); };
    for (const Chord& chord : chords)
        if (chord.key == event.key() && chord.held == held)
            return with(chord.macro);
    const auto key = keystrokeOf(event);
    const String* typed = key ? std::get_if<String>(&*key) : nullptr;
    return typed != nullptr && with([&](SectionKeys& keys, Acts& acts) { return keys.rate(acts, *typed); });
}

bool PupilGuide::mayClick(const Control& control)
{
    if (&control == controls_.accept) {
        cut_ = true;
        saving_.start();
        told_ = noticeable - again;
        statements_ = 0;
    }
    return &control != controls_.cancel || mayLeave();
}

bool PupilGuide::mayLeave()
{
    unsaved_.look();
    const std::size_t pupils = unsaved_.pupils().size();
    if (pupils == 0)
        return true;
    const QString lost = cut_ ? QStringLiteral("Puede haber cambios sin guardar")
                              : QStringLiteral("Cambios sin guardar de %1").arg(counted(pupils));
    QMessageBox box(QMessageBox::Warning, line_.window()->windowTitle(), lost, QMessageBox::NoButton,
                    line_.window());
    box.setInformativeText(QStringLiteral("Si sale ahora, se pierden. «Aceptar» los guarda."));
    const QPushButton* leave =
        box.addButton(QStringLiteral("Salir sin guardar"), QMessageBox::DestructiveRole);
    QPushButton* stay = box.addButton(QStringLiteral("Seguir aquí"), QMessageBox::RejectRole);
    box.setDefaultButton(stay);
    box.setEscapeButton(stay);
    box.exec();
    return box.clickedButton() == leave;
}

void PupilGuide::changed(const Control& control, const PropertyBase* property)
{
    unsaved_.changed(control, property);
}

void PupilGuide::look()
{
    if (!isSection())
        return;
    saving_.invalidate();
    unsaved_.look();
    const ComboBox& list = *controls_.pupils;
    QString text = list.ListIndex() < 0
                       ? QStringLiteral("Sin alumnos")
                       : QStringLiteral("Alumno %1 de %2").arg(list.ListIndex() + 1).arg(list.ListCount());
    const auto all = unsaved_.onAllPages();
    if (const auto page = unsaved_.onPage(); all.all > 0)
        text += QStringLiteral(" · %1 de %2 valoraciones").arg(all.given).arg(all.all);
    else if (page.all > 0)
        text += QStringLiteral(" · %1 de %2 valoraciones en esta pestaña").arg(page.given).arg(page.all);
    if (const std::size_t changed = unsaved_.pupils().size(); changed > 0 && !cut_)
        text += QStringLiteral(" · sin guardar: %1").arg(counted(changed));
    if (text == line_.text())
        return;
    line_.setText(text);
    QAccessibleEvent said(&line_, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&said);
}

void PupilGuide::working()
{
    if (!saving_.isValid())
        return;
    ++statements_;
    const qint64 now = saving_.elapsed();
    if (now - told_ < again)
        return;
    told_ = now;
    line_.setText(QStringLiteral("Guardando la sección… %1 operaciones").arg(statements_));
    // Painted at once: no event is handled before the save has ended.
    line_.repaint();
}

} // namespace zv
