#pragma once

#include "win32/System.h"

namespace zv::win32 {

/// Opens the suite's help file, or else the manual's page (the name of a dialog, or "mensajes", as HTML) that
/// stands in a folder "manual" beside the program, or beside the library that this is part of; where there is
/// none, says so.
void showHelp(HWND owner, const String& page);

} // namespace zv::win32
