#pragma once

#include "com/ComObject.h"

namespace zv::com {

/// Adapter of any late-bound object of ours to IDispatch. Those members whose names are given have the
/// numbers 1, 2, ..., as an interface definition has them; `described` is that interface, and lives on.
std::unique_ptr<ComObject> newNamedObject(ObjectPtr object, std::vector<String> names = {},
                                          const ZvGuid* described = nullptr);

} // namespace zv::com
