#pragma once

#include "com/ClassObject.h"

namespace zv::com {

/// Self-registration, by which hosts find the library: a file for each ProgID in "zvconfiguracion/servidores"
/// of the user's data folder (XDG_DATA_HOME, or .local/share at home), with the class identifier and the
/// library's path, a line each. ZV_E_REGISTRATION if it cannot be written, or the library cannot find its own
/// path.
ZvResult registerServer(std::span<const Creatable> classes);
/// Removes the files; a missing one is no failure.
ZvResult unregisterServer(std::span<const Creatable> classes);

} // namespace zv::com
