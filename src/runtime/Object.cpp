#include "runtime/Object.h"

namespace zv {

namespace {

Object& reached(const ObjectPtr& object)
{
    if (!object)
        fail(failure::noObject);
    return *object;
}

} // namespace

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

const Value& argument(const Arguments& arguments, std::size_t position)
{
    if (position >= arguments.size())
        fail(failure::argumentCount);
    return arguments[position];
}

ObjectPtr uncounted(Object& object) { return {ObjectPtr{}, &object}; }

} // namespace zv
