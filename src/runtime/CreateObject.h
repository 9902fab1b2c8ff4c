#pragma once

#include "runtime/Object.h"

#include <functional>

namespace zv {

using ObjectFactory = std::function<ObjectPtr()>;

/// Creates an object of the class registered under a ProgID (without regard to case); fails with 429 without
/// one.
ObjectPtr CreateObject(StringView progId);

/// Registers a host's own class, which takes precedence over a built-in one. An empty factory unregisters it.
void registerClass(StringView progId, ObjectFactory factory);
/// Registers a default class of this system.
void registerBuiltInClass(StringView progId, ObjectFactory factory);
/// Lookup: the factory that CreateObject would use; empty if there is none.
ObjectFactory registeredClass(StringView progId);

} // namespace zv
