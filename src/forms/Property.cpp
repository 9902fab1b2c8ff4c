#include "forms/Property.h"

namespace zv {

PropertyBase::PropertyBase(PropertyOwner& owner, StringView name) : owner_(owner), name_(name)
{
    owner.properties_.push_back(this);
}

void PropertyOwner::sealDesign()
{
    for (PropertyBase* property : properties_)
        property->seal();
}

void PropertyOwner::restoreDesign()
{
    for (PropertyBase* property : properties_)
        property->restore();
}

PropertyBase* PropertyOwner::findProperty(StringView name) const
{
    for (PropertyBase* property : properties_)
        if (sameName(property->name(), name))
            return property;
    return nullptr;
}

Value PropertyOwner::invoke(StringView member, Access access, Arguments& arguments)
{
    if (const Member* found = memberNamed(member))
        return found->invoke(*this, member, access, arguments);
    PropertyBase* property = findProperty(member);
    if (property == nullptr)
        fail(failure::memberMissing, member);
    if (arguments.size() != (access == Access::let ? 1U : 0U))
        fail(failure::argumentCount, member);
    if (access == Access::let)
        property->let(arguments.front());
    return property->get();
}

template class Property<String>;
template class Property<bool>;
template class Property<Integer>;
template class Property<Long>;

} // namespace zv
