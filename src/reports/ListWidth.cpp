#include "reports/ListWidth.h"

#include "forms/Desktop.h"

namespace zv {

void AjustarAnchoLista(ComboBox& objCombo)
{
    constexpr Long twipsPerPixel = 15;
    Long longest = -1;
    std::size_t length = 0;
    for (Long entry = 0; entry < objCombo.ListCount(); ++entry) {
        objCombo.ListIndex = entry;
        if (longest < 0 || objCombo.Text().size() > length) {
            longest = entry;
            length = objCombo.Text().size();
        }
    }
    if (longest < 0)
        return;
    objCombo.ListIndex = longest;
    const String text = objCombo.Text() + u"    ";
    objCombo.ListIndex = Long{-1};
    objCombo.DroppedWidth = desktop().textWidth(text) / twipsPerPixel;
}

void stepChoice(ComboBox& list, Long step)
{
    const Long next = list.ListIndex() + step;
    if (next >= 0 && next < list.ListCount())
        list.ListIndex = next;
}

} // namespace zv
