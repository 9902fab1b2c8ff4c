#pragma once

#include "com/ComObject.h"

#include <memory>

namespace zv::com {

/// A class that a library's hosts can make.
struct Creatable {
    ZvGuid classId;
    StringView progId;
    std::unique_ptr<ComObject> (*make)();
};

/// What a library's entry point gives: the object that makes objects of a class.
ZvResult classObject(std::span<const Creatable> classes, const ZvGuid* classId, const ZvGuid* interface,
                     void** place);

/// Those of the library that this code is part of; each library says its own.
std::span<const Creatable> ownClasses();

/// The five classes of the module.
std::span<const Creatable> moduleClasses();

} // namespace zv::com
