#include "com/Text.h"

#include <new>

namespace zv::com {

// UTF-16 on both sides: only the unit's type differs.

String textOf(const std::uint16_t* text)
{
    if (text == nullptr)
        return {};
    return {reinterpret_cast<const char16_t*>(text), zv_bstr_length(text)};
}

ZvBstr newText(StringView text)
{
    ZvBstr result = zv_bstr_new(reinterpret_cast<const std::uint16_t*>(text.data()), text.size());
    if (result == nullptr)
        throw std::bad_alloc();
    return result;
}

} // namespace zv::com
