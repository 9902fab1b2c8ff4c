#include "views/ViewRules.h"

#include "runtime/Convert.h"

#include <algorithm>

namespace zv {

bool places(const Control& control, const PropertyBase* property)
{
    const PropertyBase* placing[] = {&control.Enabled, &control.Visible, &control.ToolTipText, &control.Left,
                                     &control.Top,     &control.Width,   &control.Height};
    return std::ranges::find(placing, property) != std::end(placing);
}

bool hasLines(const MSFlexGrid& grid) { return grid.Rows() > 1 && grid.RowData(1) != 0; }

TextChange changeBetween(StringView before, StringView after, std::size_t caret)
{
    const std::size_t shorter = std::min(before.size(), after.size());
    // Common suffix first, and no further than the caret: what stands behind it was not edited.
    const std::size_t behind = std::min(shorter, after.size() - std::min(caret, after.size()));
    std::size_t tail = 0;
    while (tail < behind && before[before.size() - 1 - tail] == after[after.size() - 1 - tail])
        ++tail;
    std::size_t start = 0;
    while (start < shorter - tail && before[start] == after[start])
        ++start;
    return {start, before.size() - tail - start, String(after.substr(start, after.size() - tail - start))};
}

String leftInWords(Long left)
{
    for (const Long mark : {50, 20, 10})
        if (left > mark)
            return u"Quedan más de " + decimalText(mark) + u" caracteres";
    return left == 0   ? u"No caben más caracteres"
           : left == 1 ? u"Queda 1 carácter"
                       : u"Quedan " + decimalText(left) + u" caracteres";
}

} // namespace zv
