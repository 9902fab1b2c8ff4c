#pragma once

#include "runtime/Value.h"

namespace zv {

/// Record of a branch of the open bank, held in memory until the bank is accepted.
struct cSucursal {
    /// The row's key; a provisional number for a branch added meanwhile, until it is inserted.
    Integer IDSucursal = 0;
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
