#include "com/Classes.h"
#include "com/Registry.h"
#include "com/servidor/Composition.h"

// What the library exports, under the names that hosts look for; exports.map lets nothing else out.
extern "C" {

extern const ZvIdBlock _IID_CASIGNARDATOS{sizeof(ZvGuid), ZV_IID__cAsignarDatos};
extern const ZvIdBlock _IID_CCONSEJOORIENTADOR{sizeof(ZvGuid), ZV_IID__cConsejoOrientador};
extern const ZvIdBlock _IID_CDATOSSESION{sizeof(ZvGuid), ZV_IID__cDatosSesion};
extern const ZvIdBlock _IID_CINFORMEIND{sizeof(ZvGuid), ZV_IID__cInformeInd};
extern const ZvIdBlock _IID_CINFPRIMARIA{sizeof(ZvGuid), ZV_IID__cInfPrimaria};

ZvResult DllGetClassObject(const ZvGuid* classId, const ZvGuid* interface, void** place)
{
    const ZvResult ready = zv::com::guarded([] { zv::com::compose(); });
    return ready < 0 ? ready : zv::com::classObject(zv::com::moduleClasses(), classId, interface, place);
}

ZvResult DllCanUnloadNow()
{
    if (zv::com::inUse() != 0)
        return ZV_FALSE;
    bool done = false;
    const ZvResult ended = zv::com::guarded([&] { done = zv::com::dismantle(); });
    // Checked again: a host object's Release may be re-entrant and create new objects.
    return ended < 0 || (done && zv::com::inUse() == 0) ? ended : ZvResult{ZV_FALSE};
}

ZvResult DllRegisterServer() { return zv::com::registerServer(zv::com::moduleClasses()); }

ZvResult DllUnregisterServer() { return zv::com::unregisterServer(zv::com::moduleClasses()); }
}
