#pragma once

#include "runtime/Value.h"

namespace zv {

/// Record of an activity's template; no dialog edits it.
struct cPlantillaAct {
    Integer IDActividad = 0;
    String Nombre;
    Currency Precio;
    Byte Estado = 0;         ///< A row state of cConstCol.
    Byte EstadoAnterior = 0; ///< The state before this one.
};

} // namespace zv
