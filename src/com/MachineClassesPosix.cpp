#include "com/MachineClasses.h"

namespace zv::com {

void preferMachineClasses() {}

} // namespace zv::com
