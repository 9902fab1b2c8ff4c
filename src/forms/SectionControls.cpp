#include "forms/SectionControls.h"

#include "forms/ComboBox.h"
#include "forms/Controls.h"
#include "forms/Form.h"
#include "forms/MSFlexGrid.h"
#include "forms/TabStrip.h"

#include <algorithm>
#include <set>
#include <utility>

namespace zv {

namespace {

template <class C>
void keep(C*& found, Control* control)
{
    if (auto* wanted = dynamic_cast<C*>(control))
        found = wanted;
}

} // namespace

SectionControls::SectionControls(Form& owner) : form(owner)
{
    ComboBox* list = nullptr;
    std::set<const Control*> filled;
    for (Control* control : form.Controls) {
        keep(strip, control);
        keep(grid, control);
        filled.insert(control->frame());
        if (pupils == nullptr)
            keep(list, control);
        auto* button = dynamic_cast<CommandButton*>(control);
        if (button != nullptr)
            accept = std::exchange(cancel, button);
        if (button != nullptr && button->Caption() == u"<")
            keep(previous, control);
        if (button == nullptr || button->Caption() != u">" || previous == nullptr)
            continue;
        keep(next, control);
        pupils = list;
    }
    if (!isSection()) {
        accept = cancel = nullptr;
        return;
    }
    for (Control* control : form.Controls) {
        auto* choices = dynamic_cast<ComboBox*>(control);
        if (choices != nullptr && choices != pupils && grid != nullptr && control->frame() == nullptr)
            floating = choices;
        else if ((choices != nullptr && choices != pupils) || dynamic_cast<TextBox*>(control) != nullptr)
            fields.push_back(control);
        gridPages += grid != nullptr && dynamic_cast<Frame*>(control) != nullptr && !filled.contains(control);
    }
}

int SectionControls::pupil() const
{
    return !isSection() || pupils->ListIndex() < 0 ? -1 : pupils->ItemData(pupils->ListIndex());
}

bool SectionControls::ratingOpen() const
{
    // A strip that changes its page fills the list anew before it hides it; the grid has no current cell
    // then.
    return floating != nullptr && floating->Visible() && grid->Visible() && grid->Row() >= 1 &&
           floating->ListIndex() >= 0;
}

} // namespace zv
