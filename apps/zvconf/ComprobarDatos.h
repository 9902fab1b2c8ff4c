#pragma once

#include "zvconf/Command.h"

namespace zv::zvconf {

/// Second half of `comprobar`: what the dialogs will do to the rows of a school whose tables are all right.
int comprobarDatos(const String& url, bool json, bool repairs);

} // namespace zv::zvconf
