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

/// The engines of this library, made known once.
bool enginesKnown()
{
    registerEngine(sqliteEngine());
    registerEngine(odbcEngine());
    return true;
}

} // namespace

} // namespace zv::com

// What the library exports; exports.map lets nothing else out.
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
