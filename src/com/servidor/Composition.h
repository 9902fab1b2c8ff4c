#pragma once

namespace zv::com {

/// Composition root of the library, run at its first use: cipher, module, desktop.
void compose();

/// Resets the library to the state of a new process: destroys every dialog and releases the host's objects.
/// False if another thread is inside a call or owns the windows.
bool dismantle();

} // namespace zv::com
