#pragma once

#include "com/Held.h"
#include "runtime/Object.h"

namespace zv::com {

/// How objects cross the surface. Values need it for the objects among them, and the calls behind it need
/// values: so it is an interface of its own, and com/Bridge implements it.

/// A host's object, reached by name. What goes to its routines may be changed by them; a member that is read
/// or written takes plain values. Its failures come as RuntimeError, with its number and its words.
ObjectPtr objectOf(Held<ZvDispatch> dispatch);

/// An object of ours as hosts see it. A host's own comes back as it came; no object gives none.
Held<ZvDispatch> dispatchOf(const ObjectPtr& object);

} // namespace zv::com
