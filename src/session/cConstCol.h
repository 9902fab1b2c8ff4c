#pragma once

#include "runtime/Value.h"

namespace zv {

/// Dirty states of a row held in memory; as the session's action, what a dialog is opened for.
struct cConstCol {
    static constexpr Byte NoModificado = 0;
    static constexpr Byte NUEVO = 1;
    static constexpr Byte Modificado = 2;
    static constexpr Byte Eliminado = 3;
};

} // namespace zv
