#pragma once

#include "win32/System.h"

#include "runtime/Value.h"
#include "views/WindowAids.h"

#include <functional>

namespace zv::win32 {

/// The system's message box with its sign and sound, and a button that says "Aceptar" in whatever language
/// the system speaks. Returns once a person has closed it. `shown` gets the box when it has come, and `help`
/// runs at F1.
void showMessage(HWND owner, StringView prompt, Integer flags, StringView title,
                 const std::function<void(HWND)>& shown = {}, const std::function<void(HWND)>& help = {});

/// Asks in a modal box of the system; true for `yes`.
bool askQuestion(HWND owner, const Question& question);

} // namespace zv::win32
