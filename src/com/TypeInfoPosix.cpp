#include "com/TypeInfo.h"

namespace zv::com {

bool hasTypeInfo(const ZvGuid& /*interface*/) { return false; }

ZvResult typeInfo(const ZvGuid& /*interface*/, void** /*info*/) { return ZV_DISP_BADINDEX; }

} // namespace zv::com
