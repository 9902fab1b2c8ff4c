#include "com/TypeInfo.h"

namespace zv::com {

bool hasTypeInfo(const ZvGuid& /*guid*/) { return false; }

ZvResult typeInfo(const ZvGuid& /*guid*/, void** /*info*/) { return ZV_DISP_BADINDEX; }

} // namespace zv::com
