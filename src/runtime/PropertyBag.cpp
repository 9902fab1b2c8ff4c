#include "runtime/PropertyBag.h"

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
    if (access == Access::let)
        found->second = arguments.front();
    return found->second;
}

} // namespace zv
