#include "session/cConfiguracion.h"

namespace zv {

namespace {

struct RecordMember {
    StringView name;
    Value (*read)(const cConfiguracion&);
};

template <auto Member>
Value read(const cConfiguracion& record)
{
    return record.*Member;
}

constexpr RecordMember recordMembers[] = {
    {u"blnSQLServer", read<&cConfiguracion::blnSQLServer>},
    {u"intIDPerfil", read<&cConfiguracion::intIDPerfil>},
    {u"intIDUsuario", read<&cConfiguracion::intIDUsuario>},
    {u"strNombreUsuario", read<&cConfiguracion::strNombreUsuario>},
    {u"intIdCentro", read<&cConfiguracion::intIdCentro>},
    {u"strNombreCentro", read<&cConfiguracion::strNombreCentro>},
    {u"intIDCursoEscolar", read<&cConfiguracion::intIDCursoEscolar>},
    {u"intCodCurso", read<&cConfiguracion::intCodCurso>},
    {u"intTipoEnsenanza", read<&cConfiguracion::intTipoEnsenanza>},
    {u"conLocalBorradoCentro", read<&cConfiguracion::conLocalBorradoCentro>},
    {u"conLocalCentro", read<&cConfiguracion::conLocalCentro>},
    {u"conLocalAppEntrada", read<&cConfiguracion::conLocalAppEntrada>},
    {u"lngRowData", read<&cConfiguracion::lngRowData>},
    {u"bytAccion", read<&cConfiguracion::bytAccion>},
    {u"blnPesetas", read<&cConfiguracion::blnPesetas>},
    {u"Activa", read<&cConfiguracion::Activa>},
    {u"blnDatosMedicos", read<&cConfiguracion::blnDatosMedicos>},
    {u"MTP", read<&cConfiguracion::MTP>},
    {u"RutaIcono", read<&cConfiguracion::RutaIcono>},
    {u"datossesion", read<&cConfiguracion::datossesion>},
    {u"RutaBD", read<&cConfiguracion::RutaBD>},
};

} // namespace

RecordsetPtr execute(StringView statement)
{
    const ConnectionPtr& connection = Configuracion().conLocalCentro;
    if (!connection)
        fail(failure::noObject);
    return connection->Execute(statement);
}

Value configurationMember(StringView name)
{
    for (const RecordMember& member : recordMembers)
        if (sameName(member.name, name))
            return member.read(Configuracion());
    fail(failure::memberMissing, name);
}

} // namespace zv
