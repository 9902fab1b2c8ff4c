#pragma once

namespace zv {

/// Puts the module together: the suite's own classes become known by ProgID, and each dialog's name leads to
/// its single instance. A host's program calls it once, before its first cAsignarDatos; again does no harm.
void installModule();

} // namespace zv
