#include "com/TypeInfo.h"

#include "com/ComObject.h"
#include "com/OwnLibrary.h"

#include <windows.h>

#include <oleauto.h>

namespace zv::com {

bool hasTypeInfo(const ZvGuid& guid)
{
    void* info = nullptr;
    const ZvResult found = typeInfo(guid, &info);
    zv_release(info);
    return found >= 0;
}

ZvResult typeInfo(const ZvGuid& guid, void** info)
{
    return guarded([&] {
        const System<ITypeLib> types = ownTypes();
        const auto& id = reinterpret_cast<const GUID&>(guid);
        if (!types || FAILED(types->GetTypeInfoOfGuid(id, reinterpret_cast<ITypeInfo**>(info))))
            throw Refusal{ZV_DISP_BADINDEX};
    });
}

} // namespace zv::com
