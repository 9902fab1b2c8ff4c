#include "session/cAsignarDatos.h"

#include "data/LateBound.h"
#include "session/App.h"
#include "session/DialogDirectory.h"
#include "session/NodeTable.h"
#include "session/cConfiguracion.h"
#include "session/cNombreNodo.h"

#include <utility>

namespace zv {

namespace {

ConnectionPtr connection(const Value& value)
{
    const auto* object = value.as<ObjectPtr>();
    return connectionOf(object && !*object ? nullptr : CObj(value));
}

struct SessionMember {
    StringView name;
    void (*take)(cConfiguracion&, const Value&);
};

/// Members read from the host's session object, in this order: one that fails leaves those before it copied.
constexpr SessionMember sessionMembers[] = {
    {u"RutaAplicacion",
     [](cConfiguracion&, const Value& v) { single<App>().HelpFile = String() + v + u"\\zorvelcentro.chm"; }},
    {u"RutaBD", [](cConfiguracion& c, const Value& v) { c.RutaBD = CStr(v); }},
    {u"Activa", [](cConfiguracion& c, const Value& v) { c.Activa = CBool(v); }},
    {u"Accion", [](cConfiguracion& c, const Value& v) { c.bytAccion = CByte(v); }},
    {u"lngRowData", [](cConfiguracion& c, const Value& v) { c.lngRowData = CLng(v); }},
    {u"conexionBORRADOlocalCENTRO",
     [](cConfiguracion& c, const Value& v) { c.conLocalBorradoCentro = connection(v); }},
    {u"conexionlocalCENTRO", [](cConfiguracion& c, const Value& v) { c.conLocalCentro = connection(v); }},
    {u"conexionAppEntrada", [](cConfiguracion& c, const Value& v) { c.conLocalAppEntrada = connection(v); }},
    {u"IDPerfil", [](cConfiguracion& c, const Value& v) { c.intIDPerfil = CInt(v); }},
    {u"IDUsuario", [](cConfiguracion& c, const Value& v) { c.intIDUsuario = CInt(v); }},
    {u"IDCentro", [](cConfiguracion& c, const Value& v) { c.intIdCentro = CInt(v); }},
    {u"IDCursoEscolar", [](cConfiguracion& c, const Value& v) { c.intIDCursoEscolar = CInt(v); }},
    {u"NombreUsuario", [](cConfiguracion& c, const Value& v) { c.strNombreUsuario = CStr(v); }},
    {u"NombreCentro", [](cConfiguracion& c, const Value& v) { c.strNombreCentro = CStr(v); }},
    {u"Pesetas", [](cConfiguracion& c, const Value& v) { c.blnPesetas = CBool(v); }},
    {u"MTP", [](cConfiguracion& c, const Value& v) { c.MTP = CBool(v); }},
    {u"RutaIcono", [](cConfiguracion& c, const Value& v) { c.RutaIcono = CStr(v); }},
    {u"sqlserver", [](cConfiguracion& c, const Value& v) { c.blnSQLServer = CBool(v); }},
};

} // namespace

void cAsignarDatos::BloquearBanco()
{
    Form& banco = dialogs().find(u"frmBanco").instance();
    banco.reach(u"fraBanco", 0).Enabled = false;
    let(CObj(get(banco.reach(u"mstBanco"), u"Tabs", {Value(Long{2})})), u"Selected", true);
}

void cAsignarDatos::ObtenerDatos(const ObjectPtr& ObjDatosSesion)
{
    cConfiguracion& session = Configuracion();
    for (const SessionMember& member : sessionMembers)
        member.take(session, get(ObjDatosSesion, member.name));
    // Re-entrant call: releasing the former session object may run its host's Release, which may call in
    // here; so the new one is stored first.
    const ObjectPtr before = std::exchange(session.datossesion, ObjDatosSesion);
}

void cAsignarDatos::ActivarFormulario(Byte bytNodoSeleccionado)
{
    const ModuleNode* node = moduleNode(bytNodoSeleccionado);
    if (node != nullptr && node->opens)
        dialogs().find(node->dialog).instance().Show();
}

bool cAsignarDatos::Eliminar(Byte bytNodoSeleccionado)
{
    const ModuleNode* node = moduleNode(bytNodoSeleccionado);
    if (node == nullptr || !node->guards)
        return false;
    const DialogEntry& entry = dialogs().find(node->dialog);
    // A constant, not the field's value: the bank has always been given this very text.
    if (bytNodoSeleccionado == cNombreNodo::OC_Bancos)
        let(entry.instance(), u"gstrNomNodo", u"strNodoSeleccionado");
    return entry.ComprobarEliminacion && entry.ComprobarEliminacion();
}

} // namespace zv
