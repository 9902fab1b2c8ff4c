#pragma once

#include "zvconf/Command.h"

namespace zv::zvconf {

/// Subcommands of `historial`; their arguments are those behind the subcommand's name.

int activarHistorial(Arguments arguments);
int desactivarHistorial(Arguments arguments);

} // namespace zv::zvconf
