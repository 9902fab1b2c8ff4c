#include "com/Screen.h"

namespace zv::com {

std::unique_ptr<Screen> openScreen() { return nullptr; }

} // namespace zv::com
