#include "com/MachineClasses.h"

#include "com/Objects.h"
#include "runtime/CreateObject.h"

#include <windows.h>

#include <objbase.h>

namespace zv::com {

namespace {

/// An object of a class registered on this machine; none if there is no such class.
ObjectPtr machineObject(const String& progId)
{
    CLSID classId{};
    if (FAILED(CLSIDFromProgID(reinterpret_cast<const wchar_t*>(progId.c_str()), &classId)))
        return nullptr;
    Held<ZvDispatch> made;
    const HRESULT result = CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER,
                                            IID_IDispatch, reinterpret_cast<void**>(made.place()));
    if (FAILED(result))
        fail(failure::classMissing, progId);
    return objectOf(std::move(made));
}

} // namespace

void preferMachineClasses()
{
    for (const String progId : {u"ZVApi.cCentroApi", u"ZEncryptoAPI.cZEncryptoAPI"})
        registerClass(progId, [progId, ours = registeredClass(progId)] {
            ObjectPtr object = machineObject(progId);
            return object || !ours ? object : ours();
        });
}

} // namespace zv::com
