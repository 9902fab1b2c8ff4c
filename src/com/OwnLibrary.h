#pragma once

#include "com/Held.h"

#include <memory>
#include <string>

struct ITypeLib;

namespace zv::com {

/// The file of the library that this code is part of. Fails with a Refusal, ZV_E_REGISTRATION.
std::wstring ownFile();

/// Lets go of an interface of the system.
struct Release {
    void operator()(void* object) const { zv_release(object); }
};
template <class Interface>
using System = std::unique_ptr<Interface, Release>;

/// The types that are a resource of that file; none if it has none.
System<ITypeLib> ownTypes();

} // namespace zv::com
