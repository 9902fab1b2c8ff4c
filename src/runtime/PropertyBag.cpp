#include "runtime/PropertyBag.h"

#include <utility>

namespace zv {

void PropertyBag::remove(StringView member)
{
    const auto found = members_.find(member);
    if (found != members_.end())
        members_.erase(found);
}

Value PropertyBag::invoke(StringView member, Access access, Arguments& arguments)
{
    const auto found = members_.find(member);
    if (found == members_.end())
        fail(failure::memberMissing, member);
    if (arguments.size() != (access == Access::let ? 1U : 0U))
        fail(failure::argumentCount, member);
    if (access != Access::let)
        return found->second;
    // Swap first: releasing the old value may be re-entrant (a host's destructor), and must find the new one.
    const Value before = std::exchange(found->second, arguments.front());
    return arguments.front();
}

} // namespace zv
