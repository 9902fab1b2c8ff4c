#pragma once

#include "runtime/Value.h"

namespace zv {

/// A branch of the bank that is open, held in memory until the bank is accepted.
struct cSucursal {
    Integer IDSucursal =
        0; ///< The row's key; for a branch added meanwhile a number of its own, until it is inserted.
    Integer CodBanco = 0;     ///< The bank's number; no statement takes it.
    Integer CodProvincia = 0; ///< 0: none chosen.
    Byte Estado = 0;          ///< A row state of cConstCol.
    String Codigo;            ///< Four digits.
    String Nombre;
    String Direccion;
    String Poblacion;
    String CodigoPostal;
};

} // namespace zv
