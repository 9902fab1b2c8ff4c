#pragma once

#include "runtime/Object.h"

namespace zv {

/// Replaces the numbers that a form's and its controls' tags hold by the texts of those numbers.
void CargarTextos(Object& form);
/// With False, turns the form read-only: fields are disabled, "Cancelar" becomes "Salir", "Modificar" becomes
/// "Consultar" in the place of the delete button. With True it does nothing.
void BloquearControles(Object& form, bool blnActiva);

} // namespace zv
