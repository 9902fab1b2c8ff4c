#include "qt/Names.h"

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
    return label->Obligatorio() ? name + QStringLiteral(" (obligatorio)") : name;
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

QString pageOf(const Control& control)
{
    for (Control* each : control.form().Controls)
        if (auto* strip = dynamic_cast<TabStrip*>(each); strip != nullptr && strip->tabCount() > 0)
            return toQt(strip->SelectedItem().Caption);
    return {};
}

} // namespace

QString accessibleNameOf(const Control& control)
{
    const auto* button = dynamic_cast<const CommandButton*>(&control);
    if (const QString sign = button == nullptr ? QString() : signOf(*button); !sign.isEmpty())
        return sign;
    if (hasWords<CommandButton>(control) || hasWords<CheckBox>(control) || hasWords<OptionButton>(control))
        return {};
    const QString label = labelOf(control);
    const bool grid = dynamic_cast<const MSFlexGrid*>(&control) != nullptr;
    return label.isEmpty() && grid ? pageOf(control) : label;
}

} // namespace zv
