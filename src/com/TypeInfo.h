#pragma once

#include <zvconfiguracion/automation.h>

namespace zv::com {

/// What a library tells of its interfaces to hosts that ask while they run: TypeName, early binding. Only on
/// Windows, where the description is a resource of the library; elsewhere hosts' authors have the definition
/// alone.
bool hasTypeInfo(const ZvGuid& guid);
/// Puts the description of the interface, which the caller lets go of. Fails with ZV_DISP_BADINDEX if there
/// is none.
ZvResult typeInfo(const ZvGuid& guid, void** info);

} // namespace zv::com
