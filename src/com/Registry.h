#pragma once

#include "com/ClassObject.h"

namespace zv::com {

/// Self-registration of the classes, by ProgID, so that hosts find the library. On Windows that is the
/// registry, for every person of the machine; it fails with what the registry says where the caller has no
/// rights to that, and takes back what was written. Elsewhere it is a file for each ProgID in
/// "zvconfiguracion/servidores" of the person's data folder (XDG_DATA_HOME, or .local/share at home), with
/// the class identifier and the library's path, a line each. Fails with ZV_E_REGISTRATION where it cannot be
/// written or the library does not know its own place.
ZvResult registerServer(std::span<const Creatable> classes);
/// Takes away what was written; what is not there is no failure.
ZvResult unregisterServer(std::span<const Creatable> classes);

} // namespace zv::com
