#pragma once

#include "com/ComObject.h"

#include <memory>

namespace zv::com {

/// Class that hosts can instantiate: an entry of the class table of a library.
struct Creatable {
    ZvGuid classId;
    StringView progId;
    std::unique_ptr<ComObject> (*make)();
};

/// Class factory (class object) for a library's entry point: looks the class up and queries the interface.
ZvResult classObject(std::span<const Creatable> classes, const ZvGuid* classId, const ZvGuid* interface,
                     void** place);

/// The five classes of the module.
std::span<const Creatable> moduleClasses();

} // namespace zv::com
