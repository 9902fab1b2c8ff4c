#pragma once

#include "win32/System.h"

namespace zv::win32 {

/// Sets what screen readers say of a window (dynamic annotation): its name, where it is not in the window
/// itself, and what is added to it. Without effect on systems that cannot be told.
void tellName(HWND window, const String& name, const String& description);
/// The same for what stands for a group of controls.
void tellGroup(HWND window, const String& name);

} // namespace zv::win32
