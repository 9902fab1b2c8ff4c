#include "session/HostSession.h"

#include "session/cConfiguracion.h"

namespace zv {

std::shared_ptr<PropertyBag> newHostSession(const School& school)
{
    auto session = std::make_shared<PropertyBag>(u"SesionAnfitrion");
    session->add(u"RutaAplicacion", u"");
    cConfiguracion ordinary;
    ordinary.Activa = true;
    ordinary.conLocalBorradoCentro = school.borrado;
    ordinary.conLocalCentro = school.centro;
    ordinary.conLocalAppEntrada = school.entrada;
    ordinary.intIDUsuario = ordinary.intIdCentro = ordinary.intIDCursoEscolar = 1;
    ordinary.strNombreUsuario = u"usuario";
    ordinary.strNombreCentro = u"Centro";
    ordinary.handOver(*session);
    return session;
}

} // namespace zv
