#include "session/HostSession.h"

namespace zv {

std::shared_ptr<PropertyBag> newHostSession(const School& school)
{
    auto session = std::make_shared<PropertyBag>(u"SesionAnfitrion");
    const std::pair<StringView, Value> members[] = {
        {u"RutaAplicacion", u""},
        {u"RutaBD", u""},
        {u"Activa", true},
        {u"Accion", Byte{0}},
        {u"lngRowData", Long{0}},
        {u"conexionBORRADOlocalCENTRO", school.borrado},
        {u"conexionlocalCENTRO", school.centro},
        {u"conexionAppEntrada", school.entrada},
        {u"IDPerfil", Integer{0}},
        {u"IDUsuario", Integer{1}},
        {u"IDCentro", Integer{1}},
        {u"IDCursoEscolar", Integer{1}},
        {u"NombreUsuario", u"usuario"},
        {u"NombreCentro", u"Centro"},
        {u"Pesetas", false},
        {u"MTP", false},
        {u"RutaIcono", u""},
        {u"sqlserver", false},
    };
    for (const auto& [name, value] : members)
        session->add(name, value);
    return session;
}

} // namespace zv
