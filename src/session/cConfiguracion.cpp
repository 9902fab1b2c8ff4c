#include "session/cConfiguracion.h"

#include "data/LateBound.h"
#include "forms/Desktop.h"
#include "runtime/Members.h"
#include "runtime/PropertyBag.h"

#include <algorithm>

namespace zv {

namespace {

struct SessionMember {
    StringView given; ///< Name in the host's session object; empty for what no host gives.
    Member member;
};

using C = cConfiguracion;
/// In the order in which they are taken over.
constexpr SessionMember sessionMembers[] = {
    {u"RutaBD", field<&C::RutaBD>(u"RutaBD")},
    {u"Activa", field<&C::Activa>(u"Activa")},
    {u"Accion", field<&C::bytAccion>(u"bytAccion")},
    {u"lngRowData", field<&C::lngRowData>(u"lngRowData")},
    {u"conexionBORRADOlocalCENTRO", field<&C::conLocalBorradoCentro>(u"conLocalBorradoCentro")},
    {u"conexionlocalCENTRO", field<&C::conLocalCentro>(u"conLocalCentro")},
    {u"conexionAppEntrada", field<&C::conLocalAppEntrada>(u"conLocalAppEntrada")},
    {u"IDPerfil", field<&C::intIDPerfil>(u"intIDPerfil")},
    {u"IDUsuario", field<&C::intIDUsuario>(u"intIDUsuario")},
    {u"IDCentro", field<&C::intIdCentro>(u"intIdCentro")},
    {u"IDCursoEscolar", field<&C::intIDCursoEscolar>(u"intIDCursoEscolar")},
    {u"NombreUsuario", field<&C::strNombreUsuario>(u"strNombreUsuario")},
    {u"NombreCentro", field<&C::strNombreCentro>(u"strNombreCentro")},
    {u"Pesetas", field<&C::blnPesetas>(u"blnPesetas")},
    {u"MTP", field<&C::MTP>(u"MTP")},
    {u"RutaIcono", field<&C::RutaIcono>(u"RutaIcono")},
    {u"sqlserver", field<&C::blnSQLServer>(u"blnSQLServer")},
    {{}, field<&C::intCodCurso>(u"intCodCurso")},
    {{}, field<&C::intTipoEnsenanza>(u"intTipoEnsenanza")},
    {{}, field<&C::blnDatosMedicos>(u"blnDatosMedicos")},
    {{}, field<&C::datossesion>(u"datossesion")},
};

} // namespace

void cConfiguracion::takeOver(const ObjectPtr& session)
{
    for (const auto& [given, member] : sessionMembers)
        if (!given.empty())
            let(*this, member.name, get(session, given));
}

void cConfiguracion::handOver(PropertyBag& session)
{
    for (const auto& [given, member] : sessionMembers)
        if (!given.empty())
            session.add(given, get(*this, member.name));
}

const Member* cConfiguracion::memberNamed(StringView name) const
{
    const auto* found = std::ranges::find_if(
        sessionMembers, [&](const SessionMember& each) { return sameName(each.member.name, name); });
    return found == std::end(sessionMembers) ? nullptr : &found->member;
}

RecordsetPtr execute(StringView statement)
{
    const ConnectionPtr& connection = Configuracion().conLocalCentro;
    if (!connection)
        fail(failure::noObject);
    RecordsetPtr rows = connection->Execute(statement);
    if (hasDesktop())
        desktop().working();
    return rows;
}

} // namespace zv
