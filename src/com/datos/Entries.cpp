#include "com/Registry.h"
#include "com/datos/Conexion.h"
#include "data/odbc/OdbcEngine.h"
#include "data/sqlite/SqliteEngine.h"

#include <zvconfiguracion/zvdatos.h>

namespace zv::com {

namespace {

std::span<const Creatable> classes()
{
    static const Creatable conexion[] = {{ZV_CLSID_Conexion, u"ZVDatos.Conexion", newConexion}};
    return conexion;
}

/// Registers the engines of this library, once.
bool enginesKnown()
{
    registerEngine(sqliteEngine());
    registerEngine(odbcEngine());
    return true;
}

} // namespace

} // namespace zv::com

// Exported symbols; exports.map (a version script) hides all others.
extern "C" {

ZvResult DllGetClassObject(const ZvGuid* classId, const ZvGuid* interface, void** place)
{
    const ZvResult ready = zv::com::guarded([] {
        static const bool known = zv::com::enginesKnown();
        static_cast<void>(known);
    });
    return ready < 0 ? ready : zv::com::classObject(zv::com::classes(), classId, interface, place);
}

ZvResult DllCanUnloadNow() { return zv::com::inUse() == 0 ? ZV_OK : ZV_FALSE; }

ZvResult DllRegisterServer() { return zv::com::registerServer(zv::com::classes()); }

ZvResult DllUnregisterServer() { return zv::com::unregisterServer(zv::com::classes()); }
}
