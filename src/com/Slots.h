#pragma once

#include "com/Instance.h"
#include "com/Objects.h"
#include "com/Text.h"

#include <utility>

namespace zv::com {

/// Marshalling trait: native type of a kind in a vtable slot, and the conversions to and from a Value.
template <Kind K>
struct Travels;
template <class Native, class Stored>
struct TravelsAs {
    using Type = Native;
    static Value in(Native value) { return static_cast<Stored>(value); }
    static void out(const Value& value, Native* place) { *place = static_cast<Native>(*value.as<Stored>()); }
};
template <>
struct Travels<Kind::byte> : TravelsAs<std::uint8_t, Byte> {};
template <>
struct Travels<Kind::integer> : TravelsAs<std::int16_t, Integer> {};
template <>
struct Travels<Kind::whole> : TravelsAs<std::int32_t, Long> {};
template <>
struct Travels<Kind::truth> {
    using Type = ZvBool;
    static Value in(ZvBool value) { return value != 0; }
    static void out(const Value& value, ZvBool* place)
    {
        *place = *value.as<bool>() ? ZvBool{-1} : ZvBool{0};
    }
};
template <>
struct Travels<Kind::text> {
    using Type = ZvBstr;
    static Value in(const std::uint16_t* text) { return textOf(text); }
    static void out(const Value& value, ZvBstr* place) { *place = newText(*value.as<String>()); }
};
template <>
struct Travels<Kind::object> {
    using Type = ZvDispatch*;
    static Value in(ZvDispatch* object) { return objectOf(Held<ZvDispatch>::sharing(object)); }
    static void out(const Value& value, ZvDispatch** place)
    {
        *place = dispatchOf(*value.as<ObjectPtr>()).detach();
    }
};
template <>
struct Travels<Kind::collection> : Travels<Kind::object> {};

template <Kind K, std::size_t Place>
ZvResult getSlot(Face* face, typename Travels<K>::Type* place)
{
    if (place == nullptr)
        return ZV_E_POINTER;
    *place = {};
    return guarded([&] { Travels<K>::out(Self<Instance>(face)->read(Place), place); });
}

template <Kind K, std::size_t Place>
ZvResult putSlot(Face* face, typename Travels<K>::Type value)
{
    return guarded([&] { Self<Instance>(face)->write(Place, Travels<K>::in(value)); });
}

/// Generates a class's vtable from its field descriptors: a getter and a setter for each.
template <const auto& Fields, std::size_t... Place>
FunctionTable fieldFunctions(std::index_sequence<Place...> /*places*/)
{
    FunctionTable table = dispatchFunctions();
    ((table.push_back(reinterpret_cast<AnyFunction>(getSlot<Fields[Place].kind, Place>)),
      table.push_back(reinterpret_cast<AnyFunction>(putSlot<Fields[Place].kind, Place>))),
     ...);
    return table;
}
template <const auto& Fields>
const FunctionTable& fieldFunctions()
{
    static const FunctionTable table = fieldFunctions<Fields>(std::make_index_sequence<std::size(Fields)>());
    return table;
}

} // namespace zv::com
