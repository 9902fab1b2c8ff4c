#pragma once

#include "runtime/Object.h"

namespace zv {

/// What a host calls: it hands over its session, then opens the dialog behind a node of its tree, or asks
/// whether the row selected under a node may be deleted. It has no state of its own; failures reach the host
/// as RuntimeError.
class cAsignarDatos {
public:
    /// Before opening a bank for its branches: locks the bank's own fields and selects the branch tab.
    void BloquearBanco();
    /// Takes the values of the session object over into the session record.
    void ObtenerDatos(const ObjectPtr& ObjDatosSesion);
    /// Shows the dialog of the node and returns when it has closed; a number without a dialog does nothing.
    void ActivarFormulario(Byte bytNodoSeleccionado);
    /// Whether no other table refers to the row; False for a number without a guard. Deletes nothing.
    bool Eliminar(Byte bytNodoSeleccionado);
};

} // namespace zv
