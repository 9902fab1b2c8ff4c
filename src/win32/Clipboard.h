#pragma once

#include "win32/System.h"

namespace zv::win32 {

/// The text on the clipboard, or "".
String clipboardText(HWND asking);
void putOnClipboard(HWND owner, StringView text);

} // namespace zv::win32
