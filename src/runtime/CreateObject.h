#pragma once

#include "runtime/Object.h"

#include <functional>

namespace zv {

using ObjectFactory = std::function<ObjectPtr()>;

/// A new object of the class of that ProgID (without regard to case). Fails with 429 if no class is
/// registered.
ObjectPtr CreateObject(StringView progId);

/// The host's own class under a ProgID: it wins over the built-in one. An empty factory takes it away again.
void registerClass(StringView progId, ObjectFactory factory);
/// The class that the system itself brings.
void registerBuiltInClass(StringView progId, ObjectFactory factory);
/// The factory that CreateObject would use now; empty if there is none.
ObjectFactory registeredClass(StringView progId);

} // namespace zv
