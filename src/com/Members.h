#pragma once

#include "com/ComObject.h"
#include "runtime/Value.h"

namespace zv::com {

/// Types of fields, parameters and results. A collection is an object that is created lazily.
enum class Kind { nothing, byte, integer, whole, truth, text, object, collection };

/// Converts to the kind. Fails with 6, 13 or 94.
Value converted(Kind kind, const Value& value);
/// Default value: 0, False, "", no object.
Value emptyOf(Kind kind);

/// Descriptor of a property: two vtable slots, Get and Let (Set for an object), under one dispatch
/// identifier.
struct Field {
    StringView name;
    Kind kind;
};

/// Descriptor of a method with at most one parameter.
struct Method {
    StringView name;
    StringView parameter; ///< Empty if it takes none.
    Kind taken;
    Kind given;
};

/// Descriptor of a class that hosts instantiate: its default interface has either fields or methods.
struct ClassInfo {
    StringView name;
    ZvGuid classId;
    ZvGuid interfaceId;
    std::span<const Field> fields;
    std::span<const Method> methods;
};

/// First dispatch identifiers; the others follow consecutively.
inline constexpr std::int32_t firstFieldId = 0x40030000;
inline constexpr std::int32_t firstMethodId = 0x60030000;

} // namespace zv::com
