#include "com/Instance.h"

#include <algorithm>

namespace zv::com {

namespace {

constexpr int assigns = ZV_PROPERTYPUT | ZV_PROPERTYPUTREF;

/// Converts an argument to its kind; what does not convert is a Refusal, and not an error of ours.
Value fitted(Kind kind, const Value& argument, std::size_t place)
{
    try {
        return converted(kind, argument);
    } catch (const RuntimeError& error) {
        const bool overflow = error.number() == failure::overflow;
        throw Refusal{overflow ? ZV_DISP_OVERFLOW : ZV_DISP_TYPEMISMATCH, place};
    }
}

/// Arity check: no parameter of these classes is optional.
void expect(std::size_t count, const DispatchObject::Call& call)
{
    if (call.arguments.size() != count)
        throw Refusal{ZV_DISP_BADPARAMCOUNT};
    if (call.leftOut < count)
        throw Refusal{ZV_DISP_PARAMNOTOPTIONAL, call.leftOut};
}

template <class Members>
std::int32_t idIn(const Members& members, StringView name, std::int32_t first)
{
    const auto found =
        std::ranges::find_if(members, [&](const auto& each) { return sameName(each.name, name); });
    return found == members.end() ? std::int32_t{ZV_DISPID_UNKNOWN}
                                  : first + static_cast<std::int32_t>(found - members.begin());
}

/// Index of a dispatch identifier; SIZE_MAX, or past the end, if it is none of these.
std::size_t placeOf(std::int32_t id, std::int32_t first)
{
    return id < first ? SIZE_MAX : static_cast<std::size_t>(id - first);
}

} // namespace

std::int32_t Instance::idOf(StringView member)
{
    const std::int32_t method = idIn(class_.methods, member, firstMethodId);
    return method != ZV_DISPID_UNKNOWN ? method : idIn(class_.fields, member, firstFieldId);
}

std::int32_t Instance::parameterOf(std::int32_t member, StringView name) const
{
    const std::size_t place = placeOf(member, firstMethodId);
    const bool known = place < class_.methods.size() && !class_.methods[place].parameter.empty() &&
                       sameName(class_.methods[place].parameter, name);
    return known ? 0 : std::int32_t{ZV_DISPID_UNKNOWN};
}

Value Instance::invoke(Call& call)
{
    if (const std::size_t method = placeOf(call.id, firstMethodId); method < class_.methods.size())
        return invokeMethod(method, call);
    if (const std::size_t field = placeOf(call.id, firstFieldId); field < class_.fields.size())
        return invokeField(field, call);
    throw Refusal{ZV_DISP_MEMBERNOTFOUND};
}

Value Instance::invokeField(std::size_t place, Call& call)
{
    const Kind kind = class_.fields[place].kind;
    const int letMode = kind == Kind::collection ? ZV_PROPERTYPUTREF : ZV_PROPERTYPUT;
    const bool writes = (call.modes & assigns) != 0;
    if ((call.modes & (writes ? letMode : ZV_PROPERTYGET)) == 0)
        throw Refusal{ZV_DISP_MEMBERNOTFOUND};
    // Arguments of a collection index it, as its default member would: colMaterias(1).
    if (!writes && kind == Kind::collection && !call.arguments.empty())
        return get(CObj(read(place)), u"Item", call.arguments);
    expect(writes ? 1 : 0, call);
    if (!writes)
        return read(place);
    write(place, fitted(kind, call.arguments.front(), 0));
    return {};
}

Value Instance::invokeMethod(std::size_t place, Call& call)
{
    const Method& method = class_.methods[place];
    if ((call.modes & ZV_METHOD) == 0)
        throw Refusal{ZV_DISP_MEMBERNOTFOUND};
    expect(method.parameter.empty() ? 0 : 1, call);
    return run(place, call.arguments.empty() ? Value() : fitted(method.taken, call.arguments.front(), 0));
}

} // namespace zv::com
