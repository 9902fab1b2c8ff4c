#pragma once

#include "runtime/Object.h"

namespace zv {

/// The facade: a host hands over its session, then opens the dialog behind a node of its tree, or asks
/// whether the row selected under a node may be deleted. Stateless; failures reach the host as RuntimeError.
class cAsignarDatos {
public:
    /// Prepares the bank's dialog for its branches: disables the bank's own fields and selects the branch
    /// tab.
    void BloquearBanco();
    /// Copies the members of the host's session object into the session record.
    void ObtenerDatos(const ObjectPtr& ObjDatosSesion);
    /// Shows the dialog of the node and returns when it has closed; a number without a dialog does nothing.
    void ActivarFormulario(Byte bytNodoSeleccionado);
    /// Asks the guard of the node's dialog: whether no other table refers to the row. False for a number
    /// without a guard. Deletes nothing, whatever its name says.
    bool Eliminar(Byte bytNodoSeleccionado);
};

} // namespace zv
