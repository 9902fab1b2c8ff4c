#pragma once

#include "zvconf/Command.h"

namespace zv::zvconf {

/// How findings are told: each in words; only how many, without anybody's name; or for another program.
enum class Telling { each, count, json };

/// Second half of `comprobar`: what the dialogs will do to the rows of a school whose tables are all right.
int comprobarDatos(const String& url, Telling telling, bool repairs);

} // namespace zv::zvconf
