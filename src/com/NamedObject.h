#pragma once

#include "com/ComObject.h"

namespace zv::com {

/// An object of ours, whatever its members, for hosts that call it by name. Those members whose names are
/// given have the numbers 1, 2, ..., as an interface definition has them; `described` is that interface, and
/// lives on.
std::unique_ptr<ComObject> newNamedObject(ObjectPtr object, std::vector<String> names = {},
                                          const ZvGuid* described = nullptr);

} // namespace zv::com
