#pragma once

namespace zv::com {

/// Puts the library together at its first use: cipher, module, and what shows its dialogs.
void compose();

/// Ends every dialog and lets go of what the host handed in. The next use starts as in a new process. False
/// where another thread is inside, or the windows belong to one.
bool dismantle();

} // namespace zv::com
