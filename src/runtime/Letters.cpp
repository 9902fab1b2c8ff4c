#include "runtime/Letters.h"

namespace zv {

String lowerLetters(StringView text)
{
    String lower = lowerName(text);
    for (char16_t& unit : lower)
        if (unit >= u'À' && unit <= u'Þ' && unit != u'×')
            unit = static_cast<char16_t>(unit + 0x20);
    return lower;
}

} // namespace zv
