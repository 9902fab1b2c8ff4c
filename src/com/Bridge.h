#pragma once

#include "com/Objects.h"

namespace zv::com {

/// For the end of the process: from now on host objects are leaked instead of released, as the code of their
/// Release may be unloaded already.
void leaveHostObjects();

} // namespace zv::com
