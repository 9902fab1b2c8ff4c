#pragma once

#include "com/ComObject.h"

namespace zv::com {

/// An object of ours, whatever its members, for hosts that call it by name.
std::unique_ptr<ComObject> newNamedObject(ObjectPtr object);

} // namespace zv::com
