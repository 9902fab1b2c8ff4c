#pragma once

#include "com/ComObject.h"
#include "com/Members.h"

#include <memory>

namespace zv::com {

/// Plain records that hosts fill and read: fields only, no logic.
std::unique_ptr<ComObject> newDatosSesion();
std::unique_ptr<ComObject> newConsejoOrientador();
std::unique_ptr<ComObject> newInformeInd();
std::unique_ptr<ComObject> newInfPrimaria();

} // namespace zv::com
