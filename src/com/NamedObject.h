#pragma once

#include "com/ComObject.h"

namespace zv::com {

/// Adapter of any late-bound object of ours to IDispatch.
std::unique_ptr<ComObject> newNamedObject(ObjectPtr object);

} // namespace zv::com
