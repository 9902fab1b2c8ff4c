#include "com/Classes.h"
#include "com/Registry.h"
#include "com/servidor/Composition.h"

std::span<const zv::com::Creatable> zv::com::ownClasses() { return moduleClasses(); }

// Exported symbols, under the names that hosts look up; the list of exports hides all others.
extern "C" {

extern const ZvIdBlock _IID_CASIGNARDATOS{sizeof(ZvGuid), ZV_IID__cAsignarDatos};
extern const ZvIdBlock _IID_CCONSEJOORIENTADOR{sizeof(ZvGuid), ZV_IID__cConsejoOrientador};
extern const ZvIdBlock _IID_CDATOSSESION{sizeof(ZvGuid), ZV_IID__cDatosSesion};
extern const ZvIdBlock _IID_CINFORMEIND{sizeof(ZvGuid), ZV_IID__cInformeInd};
extern const ZvIdBlock _IID_CINFPRIMARIA{sizeof(ZvGuid), ZV_IID__cInfPrimaria};

ZvResult ZV_CALL DllGetClassObject(const ZvGuid* classId, const ZvGuid* interface, void** place)
{
    const ZvResult ready = zv::com::guarded([] { zv::com::compose(); });
    return ready < 0 ? ready : zv::com::classObject(zv::com::ownClasses(), classId, interface, place);
}

ZvResult ZV_CALL DllCanUnloadNow()
{
    if (zv::com::inUse() != 0)
        return ZV_FALSE;
    bool done = false;
    const ZvResult ended = zv::com::guarded([&] { done = zv::com::dismantle(); });
    // Checked again: a host object's Release may be re-entrant and create new objects.
    return ended < 0 || (done && zv::com::inUse() == 0) ? ended : ZvResult{ZV_FALSE};
}

ZvResult ZV_CALL DllRegisterServer() { return zv::com::registerServer(zv::com::ownClasses()); }

ZvResult ZV_CALL DllUnregisterServer() { return zv::com::unregisterServer(zv::com::ownClasses()); }
}
