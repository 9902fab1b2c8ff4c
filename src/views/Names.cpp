#include "views/Names.h"

#include "forms/ComboBox.h"
#include "forms/Controls.h"
#include "forms/Form.h"
#include "forms/MSFlexGrid.h"
#include "forms/TabStrip.h"

namespace zv {

namespace {

String labelOf(const Control& field)
{
    const auto* label = dynamic_cast<const Label*>(field.label());
    if (label == nullptr)
        return {};
    String name = Trim(label->Caption());
    if (name.ends_with(u':'))
        name.pop_back();
    return name;
}

/// Of a caption that is a sign, what it stands for; of words, nothing.
String signOf(const CommandButton& button)
{
    const String& caption = button.Caption();
    if (caption == u"<")
        return u"Anterior";
    if (caption == u">")
        return u"Siguiente";
    return caption == u"..." ? button.ToolTipText() : String();
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
String pageOf(const Control& control)
{
    TabStrip* strip = stripOf(control.form());
    if (strip == nullptr)
        return {};
    if (control.frame() == nullptr)
        return dynamic_cast<const MSFlexGrid*>(&control) == nullptr ? String()
                                                                    : strip->SelectedItem().Caption;
    const Long page = control.frame()->Index() + 1;
    if (page < 1 || page > strip->tabCount())
        return {};
    const String caption = strip->Tabs(page).Caption;
    return control.Index() < 0 ? caption : caption + u", " + decimalText(control.Index() + 1);
}

/// First cell of the row whose value a list that floats over a grid gives: what is rated.
String ratedBy(const ComboBox& list)
{
    for (const Control* each : list.form().Controls)
        if (const auto* grid = dynamic_cast<const MSFlexGrid*>(each);
            grid != nullptr && grid->Row() > 0 && grid->Row() < grid->Rows())
            return grid->TextMatrix(grid->Row(), 0);
    return {};
}

} // namespace

String accessibleDescriptionOf(const Control& control)
{
    const auto* label = dynamic_cast<const Label*>(control.label());
    String tip = control.ToolTipText();
    if (tip == accessibleNameOf(control))
        tip.clear();
    // The small buttons behind a field are nothing to be filled in.
    const bool button = dynamic_cast<const CommandButton*>(&control) != nullptr;
    if (button || label == nullptr || !label->Obligatorio())
        return tip;
    return tip.empty() ? u"Obligatorio" : u"Obligatorio. " + tip;
}

String accessibleNameOf(const Control& control)
{
    const auto* button = dynamic_cast<const CommandButton*>(&control);
    if (String sign = button == nullptr ? String() : signOf(*button); !sign.empty())
        return sign;
    if (hasWords<CommandButton>(control) || hasWords<CheckBox>(control) || hasWords<OptionButton>(control))
        return {};
    String label = labelOf(control);
    if (!label.empty())
        return label;
    const auto* list = dynamic_cast<const ComboBox*>(&control);
    return list == nullptr ? pageOf(control) : ratedBy(*list);
}

} // namespace zv
