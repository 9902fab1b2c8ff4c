#pragma once

#include "com/Held.h"
#include "runtime/Object.h"

namespace zv::com {

/// Marshalling of objects. Variants need it for the objects in them, and its calls need variants: an
/// interface of its own breaks that cycle, and com/Bridge implements it.

/// Adapter of a host's object: late-bound through IDispatch. Arguments of methods go by reference, those of
/// properties by value. Its failures come as RuntimeError, with its number and text.
ObjectPtr objectOf(Held<ZvDispatch> dispatch);

/// Inverse: an object of ours for a host. A host's own one is unwrapped; nullptr gives nullptr.
Held<ZvDispatch> dispatchOf(const ObjectPtr& object);

} // namespace zv::com
