#include "com/Members.h"

#include "runtime/Convert.h"

namespace zv::com {

Value converted(Kind kind, const Value& value)
{
    switch (kind) {
    case Kind::byte:
        return CByte(value);
    case Kind::integer:
        return CInt(value);
    case Kind::whole:
        return CLng(value);
    case Kind::truth:
        return CBool(value);
    case Kind::text:
        return CStr(value);
    case Kind::object:
    case Kind::collection:
        if (value.as<ObjectPtr>() == nullptr)
            fail(failure::typeMismatch);
        return value;
    case Kind::nothing:
        break;
    }
    return {};
}

Value emptyOf(Kind kind)
{
    const bool object = kind == Kind::object || kind == Kind::collection;
    return object ? Value(ObjectPtr()) : converted(kind, Value());
}

} // namespace zv::com
