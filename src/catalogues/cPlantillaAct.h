#pragma once

#include "runtime/Value.h"

namespace zv {

/// A template of an activity. No dialog edits it.
struct cPlantillaAct {
    Integer IDActividad = 0;
    String Nombre;
    Currency Precio;
    Byte Estado = 0;         ///< A row state of cConstCol.
    Byte EstadoAnterior = 0; ///< The one before it.
};

} // namespace zv
