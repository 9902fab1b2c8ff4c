#include "services/Messages.h"

#include "runtime/Convert.h"
#include "services/MessageTable.h"

#include <algorithm>

namespace zv {

// Precondition of the binary search: strictly ascending numbers.
static_assert(std::ranges::adjacent_find(messageTable, std::ranges::greater_equal{}, &Message::id) ==
              std::end(messageTable));

String LoadResString(Long id)
{
    const auto* found = std::ranges::lower_bound(messageTable, id, {}, &Message::id);
    if (found == std::end(messageTable) || found->id != id)
        fail(failure::resourceMissing, decimalText(id));
    return String(found->text);
}

void showMessage(Integer id, Integer flags)
{
    MsgBox(LoadResString(id), flags, LoadResString(message::title));
}

void warn(Integer id, Integer flags)
{
    Beep();
    showMessage(id, flags);
}

bool reportedFailure(Integer id, Integer flags)
{
    if (Err().Number == 0)
        return false;
    warn(id, flags);
    Err().Clear();
    return true;
}

} // namespace zv
