#include "com/AsignarDatos.h"
#include "com/ClassObject.h"
#include "com/Classes.h"
#include "com/Record.h"

namespace zv::com {

std::span<const Creatable> moduleClasses()
{
    static const Creatable classes[] = {
        {ZV_CLSID_cDatosSesion, u"ZVConfiguracion.cDatosSesion", newDatosSesion},
        {ZV_CLSID_cConsejoOrientador, u"ZVConfiguracion.cConsejoOrientador", newConsejoOrientador},
        {ZV_CLSID_cAsignarDatos, u"ZVConfiguracion.cAsignarDatos", newAsignarDatos},
        {ZV_CLSID_cInformeInd, u"ZVConfiguracion.cInformeInd", newInformeInd},
        {ZV_CLSID_cInfPrimaria, u"ZVConfiguracion.cInfPrimaria", newInfPrimaria},
    };
    return classes;
}

} // namespace zv::com
