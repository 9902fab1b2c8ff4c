#pragma once

#include "com/ComObject.h"
#include "runtime/Value.h"

namespace zv::com {

/// What a member holds, takes or gives. A collection is an object that is there from its first use.
enum class Kind { nothing, byte, integer, whole, truth, text, object, collection };

/// The value as the kind holds it. Fails with 6, 13 or 94.
Value converted(Kind kind, const Value& value);
/// What it holds before anything was put there: 0, False, "", no object.
Value emptyOf(Kind kind);

/// A property with a Get and a Let under one identifier (an object has a Set).
struct Field {
    StringView name;
    Kind kind;
};

/// A method with at most one parameter.
struct Method {
    StringView name;
    StringView parameter; ///< Empty if it takes none.
    Kind taken;
    Kind given;
};

/// A class that hosts make: its default interface has either fields or methods.
struct ClassInfo {
    StringView name;
    ZvGuid classId;
    ZvGuid interfaceId;
    std::span<const Field> fields;
    std::span<const Method> methods;
};

/// Identifiers of the members run on from these.
inline constexpr std::int32_t firstFieldId = 0x40030000;
inline constexpr std::int32_t firstMethodId = 0x60030000;

} // namespace zv::com
