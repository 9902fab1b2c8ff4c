#include "runtime/Object.h"

#include <algorithm>

namespace zv {

namespace {

Object& reached(const ObjectPtr& object)
{
    if (!object)
        fail(failure::noObject);
    return *object;
}

} // namespace

Value Member::invoke(Object& self, StringView called, Access access, Arguments& arguments) const
{
    const Call& call = access == Access::let ? let : get;
    if (call.run == nullptr)
        fail(isMethod ? failure::memberMissing : failure::readOnlyProperty, called);
    if (arguments.size() < call.least || arguments.size() > call.most)
        fail(failure::argumentCount, called);
    return call.run(self, arguments);
}

const Member* findMember(std::span<const Member> members, StringView name)
{
    const auto found =
        std::ranges::find_if(members, [&](const Member& each) { return sameName(each.name, name); });
    return found == members.end() ? nullptr : &*found;
}

Value Object::invoke(StringView member, Access access, Arguments& arguments)
{
    const Member* found = memberNamed(member);
    if (found == nullptr)
        fail(failure::memberMissing, member);
    return found->invoke(*this, member, access, arguments);
}

const Member* Object::memberNamed(StringView /*name*/) const { return nullptr; }

Value get(Object& object, StringView member, Arguments arguments)
{
    return object.invoke(member, Access::get, arguments);
}

void let(Object& object, StringView member, Value value)
{
    Arguments arguments{std::move(value)};
    object.invoke(member, Access::let, arguments);
}

Value call(Object& object, StringView member, Arguments arguments)
{
    return object.invoke(member, Access::call, arguments);
}

Value get(const ObjectPtr& object, StringView member, Arguments arguments)
{
    return get(reached(object), member, std::move(arguments));
}

void let(const ObjectPtr& object, StringView member, Value value)
{
    let(reached(object), member, std::move(value));
}

Value call(const ObjectPtr& object, StringView member, Arguments arguments)
{
    return call(reached(object), member, std::move(arguments));
}

Value callByReference(const ObjectPtr& object, StringView member, Arguments& arguments)
{
    return reached(object).invoke(member, Access::call, arguments);
}

ObjectPtr uncounted(Object& object) { return {ObjectPtr{}, &object}; }

} // namespace zv
