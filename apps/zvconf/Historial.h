#pragma once

#include "zvconf/Command.h"

namespace zv::zvconf {

/// Subcommands of `historial`; their arguments are those behind the subcommand's name.

int activarHistorial(Arguments arguments);
int desactivarHistorial(Arguments arguments);
int comprobarHistorial(Arguments arguments);
int olvidarHistorial(Arguments arguments);
int plazoHistorial(Arguments arguments);
int exportarHistorial(Arguments arguments);

} // namespace zv::zvconf
