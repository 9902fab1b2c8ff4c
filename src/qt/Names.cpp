#include "qt/Names.h"

#include "forms/ComboBox.h"
#include "forms/Controls.h"
#include "forms/Form.h"
#include "forms/MSFlexGrid.h"
#include "forms/TabStrip.h"
#include "qt/QtText.h"

namespace zv {

namespace {

QString labelOf(const Control& field)
{
    const auto* label = dynamic_cast<const Label*>(field.label());
    if (label == nullptr)
        return {};
    QString name = toQt(label->Caption()).trimmed();
    if (name.endsWith(u':'))
        name.chop(1);
    return name;
}

/// Of a caption that is a sign, what it stands for; of words, nothing.
QString signOf(const CommandButton& button)
{
    const String& caption = button.Caption();
    if (caption == u"<")
        return QStringLiteral("Anterior");
    if (caption == u">")
        return QStringLiteral("Siguiente");
    return caption == u"..." ? toQt(button.ToolTipText()) : QString();
}

template <class Button>
bool hasWords(const Control& control)
{
    const auto* button = dynamic_cast<const Button*>(&control);
    return button != nullptr && !button->Caption().empty();
}

TabStrip* stripOf(const Form& form)
{
    for (Control* each : form.Controls)
        if (auto* strip = dynamic_cast<TabStrip*>(each); strip != nullptr && strip->tabCount() > 0)
            return strip;
    return nullptr;
}

/// Caption of the page that a grid stands on, or of the one that holds the field, with the field's number.
QString pageOf(const Control& control)
{
    TabStrip* strip = stripOf(control.form());
    if (strip == nullptr)
        return {};
    if (control.frame() == nullptr)
        return dynamic_cast<const MSFlexGrid*>(&control) == nullptr ? QString()
                                                                    : toQt(strip->SelectedItem().Caption);
    const Long page = control.frame()->Index() + 1;
    if (page < 1 || page > strip->tabCount())
        return {};
    const QString caption = toQt(strip->Tabs(page).Caption);
    return control.Index() < 0 ? caption : QStringLiteral("%1, %2").arg(caption).arg(control.Index() + 1);
}

/// First cell of the row whose value a list that floats over a grid gives: what is rated.
QString ratedBy(const ComboBox& list)
{
    for (const Control* each : list.form().Controls)
        if (const auto* grid = dynamic_cast<const MSFlexGrid*>(each);
            grid != nullptr && grid->Row() > 0 && grid->Row() < grid->Rows())
            return toQt(grid->TextMatrix(grid->Row(), 0));
    return {};
}

} // namespace

QString accessibleDescriptionOf(const Control& control)
{
    const auto* label = dynamic_cast<const Label*>(control.label());
    QString tip = toQt(control.ToolTipText());
    if (tip == accessibleNameOf(control))
        tip.clear();
    // The small buttons behind a field are nothing to be filled in.
    const bool button = dynamic_cast<const CommandButton*>(&control) != nullptr;
    if (button || label == nullptr || !label->Obligatorio())
        return tip;
    return tip.isEmpty() ? QStringLiteral("Obligatorio") : QStringLiteral("Obligatorio. ") + tip;
}

QString accessibleNameOf(const Control& control)
{
    const auto* button = dynamic_cast<const CommandButton*>(&control);
    if (QString sign = button == nullptr ? QString() : signOf(*button); !sign.isEmpty())
        return sign;
    if (hasWords<CommandButton>(control) || hasWords<CheckBox>(control) || hasWords<OptionButton>(control))
        return {};
    QString label = labelOf(control);
    if (!label.isEmpty())
        return label;
    const auto* list = dynamic_cast<const ComboBox*>(&control);
    return list == nullptr ? pageOf(control) : ratedBy(*list);
}

} // namespace zv
