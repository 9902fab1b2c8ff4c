#include "com/Registry.h"
#include "com/datos/Conexion.h"
#include "data/history/HistoryEngine.h"
#include "data/odbc/OdbcEngine.h"
#include "data/sqlite/SqliteEngine.h"

#include <zvconfiguracion/zvdatos.h>

namespace zv::com {

namespace {

/// Registers the engines of this library, once.
bool enginesKnown()
{
    registerEngine(sqliteEngine());
    registerEngine(odbcEngine());
    registerEngine(historyEngine());
    return true;
}

} // namespace

std::span<const Creatable> ownClasses()
{
    static const Creatable conexion[] = {{ZV_CLSID_Conexion, u"ZVDatos.Conexion", newConexion}};
    return conexion;
}

} // namespace zv::com

// Exported symbols; the list of exports hides all others.
extern "C" {

ZvResult ZV_CALL DllGetClassObject(const ZvGuid* classId, const ZvGuid* interface, void** place)
{
    const ZvResult ready = zv::com::guarded([] {
        static const bool known = zv::com::enginesKnown();
        static_cast<void>(known);
    });
    return ready < 0 ? ready : zv::com::classObject(zv::com::ownClasses(), classId, interface, place);
}

ZvResult ZV_CALL DllCanUnloadNow() { return zv::com::inUse() == 0 ? ZV_OK : ZV_FALSE; }

ZvResult ZV_CALL DllRegisterServer() { return zv::com::registerServer(zv::com::ownClasses()); }

ZvResult ZV_CALL DllUnregisterServer() { return zv::com::unregisterServer(zv::com::ownClasses()); }
}
