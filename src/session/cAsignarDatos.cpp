#include "session/cAsignarDatos.h"

#include "session/App.h"
#include "session/DialogDirectory.h"
#include "session/NodeTable.h"
#include "session/cConfiguracion.h"
#include "session/cNombreNodo.h"

#include <utility>

namespace zv {

void cAsignarDatos::BloquearBanco()
{
    Form& banco = dialogs().find(u"frmBanco").instance();
    banco.reach(u"fraBanco", 0).Enabled = false;
    let(CObj(get(banco.reach(u"mstBanco"), u"Tabs", {Value(Long{2})})), u"Selected", true);
}

void cAsignarDatos::ObtenerDatos(const ObjectPtr& ObjDatosSesion)
{
    cConfiguracion& session = Configuracion();
    single<App>().HelpFile = String() + get(ObjDatosSesion, u"RutaAplicacion") + u"\\zorvelcentro.chm";
    session.takeOver(ObjDatosSesion);
    // Stored before the one before it is let go of: its host may call in here from its Release.
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
