#include "qt/Contents.h"

#include "forms/ComboBox.h"
#include "forms/Controls.h"
#include "forms/Form.h"
#include "forms/MSFlexGrid.h"
#include "forms/TabStrip.h"
#include "forms/UnsavedPupils.h"
#include "qt/Names.h"
#include "qt/QtText.h"

#include <QStringList>

#include <optional>

namespace zv {

namespace {

QString line(const QString& name, const QString& text) { return QStringLiteral("%1: %2\n").arg(name, text); }

QString rowsOf(const MSFlexGrid& grid)
{
    QString text;
    for (Long row = 0; row < grid.Rows(); ++row) {
        QStringList cells;
        for (Long column = 0; column < grid.Cols(); ++column)
            if (grid.ColWidth(column) > 0)
                cells.append(shown(grid.TextMatrix(row, column)));
        text += QStringLiteral("  %1\n").arg(cells.join(QStringLiteral(" | ")));
    }
    return text;
}

/// Value of a control that holds one. A list that floats over a grid is part of it, and no field.
std::optional<QString> valueOf(const Control& control)
{
    if (const auto* box = dynamic_cast<const TextBox*>(&control))
        return shown(box->Text());
    if (const auto* list = dynamic_cast<const ComboBox*>(&control); list != nullptr && list->Visible())
        return toQt(list->Text());
    if (const auto* tick = dynamic_cast<const CheckBox*>(&control))
        return tick->Value() != 0 ? QStringLiteral("sí") : QStringLiteral("no");
    if (const auto* option = dynamic_cast<const OptionButton*>(&control);
        option != nullptr && option->Value())
        return QStringLiteral("sí");
    if (const auto* grid = dynamic_cast<const MSFlexGrid*>(&control))
        return u'\n' + rowsOf(*grid);
    return std::nullopt;
}

QString captionOf(const Control& control)
{
    if (const auto* tick = dynamic_cast<const CheckBox*>(&control))
        return toQt(tick->Caption());
    if (const auto* option = dynamic_cast<const OptionButton*>(&control))
        return toQt(option->Caption());
    return {};
}

QString nameOf(const Control& control)
{
    const QString name = accessibleNameOf(control);
    return name.isEmpty() ? captionOf(control) : name;
}

QString heading(const QString& text) { return QStringLiteral("\n== %1 ==\n").arg(text); }

} // namespace

QString contentsOf(const Form& form)
{
    QString text = heading(toQt(form.Caption()));
    for (const Control* control : form.Controls)
        if (const std::optional<QString> value = valueOf(*control))
            text += line(nameOf(*control), *value);
    return text;
}

QString contentsOf(const SectionControls& section, const UnsavedPupils& pupils)
{
    QString text;
    int pupil = -1;
    for (const UnsavedPupils::Answer& answer : pupils.answers()) {
        if (answer.pupil != pupil) {
            pupil = answer.pupil;
            const Long place = section.pupils->find(pupil);
            text += heading(place < 0 ? QString::number(pupil) : toQt(section.pupils->List(place)));
        }
        const QString name = answer.page == 0
                                 ? nameOf(*answer.field)
                                 : toQt(section.strip->Tabs(answer.page).Caption + u", " + answer.question);
        text += line(name, shown(answer.text));
    }
    return text;
}

} // namespace zv
