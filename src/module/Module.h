#pragma once

namespace zv {

/// Composition root: registers the suite's own classes by ProgID, and each dialog's single instance by name.
/// A host's program calls it once, before its first cAsignarDatos; again does no harm.
void installModule();

} // namespace zv
