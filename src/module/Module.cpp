#include "module/Module.h"

#include "banks/frmBanco.h"
#include "banks/frmEmisor.h"
#include "banks/frmPresentador.h"
#include "banks/frmSucursal.h"
#include "catalogues/frmCEspecializacion.h"
#include "catalogues/frmEnfermedad.h"
#include "catalogues/frmEstadoCivil.h"
#include "catalogues/frmIdioma.h"
#include "catalogues/frmNacionalidad.h"
#include "catalogues/frmObservacion.h"
#include "catalogues/frmOpcionMateria.h"
#include "catalogues/frmPais.h"
#include "catalogues/frmPonderacion.h"
#include "catalogues/frmProfesion.h"
#include "catalogues/frmProvincia.h"
#include "catalogues/frmTipoAlumno.h"
#include "catalogues/frmTipoCentro.h"
#include "catalogues/frmTipoContrato.h"
#include "catalogues/frmTipoIncidencia.h"
#include "catalogues/frmTipoIva.h"
#include "catalogues/frmTipoJustificacion.h"
#include "catalogues/frmTipoMaterialDidactico.h"
#include "catalogues/frmTipoMiembroCentro.h"
#include "catalogues/frmTipoMotivoBaja.h"
#include "catalogues/frmTipoNivelEstudios.h"
#include "catalogues/frmTipoOcurrencia.h"
#include "catalogues/frmTipoParentesco.h"
#include "catalogues/frmTipoTarea.h"
#include "catalogues/frmTurno.h"
#include "forms/Desktop.h"
#include "reports/frmConsejoOrientador.h"
#include "reports/frmConsejoOrientador1.h"
#include "reports/frmInfIndESO.h"
#include "reports/frmInfIndPrim.h"
#include "reports/frmInformeIndividual.h"
#include "reports/frmRespConsejo.h"
#include "reports/frmRespInfInd.h"
#include "session/App.h"
#include "session/DialogDirectory.h"
#include "session/cConfiguracion.h"
#include "suite/CentroApi.h"
#include "suite/Registrations.h"

namespace zv {

namespace {

/// Where the instance will stand is made ready: it then ends after whatever is set up behind the module.
template <class Dialog>
void addDialog(StringView name)
{
    singleSlot<Dialog>();
    dialogs().add(name, {.instance = []() -> Form& { return single<Dialog>(); },
                         .ComprobarEliminacion = [] { return single<Dialog>().ComprobarEliminacion(); }});
}

/// A dialog whose rows are not deleted.
template <class Dialog>
void addUnguarded(StringView name)
{
    singleSlot<Dialog>();
    dialogs().add(name,
                  {.instance = []() -> Form& { return single<Dialog>(); }, .ComprobarEliminacion = nullptr});
}

/// Other stations are to see that the rows open here are not left behind.
void signOfLife()
{
    try {
        if (const ConnectionPtr& centro = Configuracion().conLocalCentro)
            giveSign(*centro, thisStation());
    } catch (const RuntimeError&) {
        // A sign may be missed; what fails for good, the dialog's next statement tells.
    }
}

} // namespace

void installModule()
{
    registerSuite();
    onWaiting(signOfLife);
    onHelp([] { return single<App>().HelpFile; });
    addDialog<frmBanco>(u"frmBanco");
    addDialog<frmEmisor>(u"frmEmisor");
    addDialog<frmPresentador>(u"frmPresentador");
    addDialog<frmCEspecializacion>(u"frmCEspecializacion");
    addDialog<frmEnfermedad>(u"frmEnfermedad");
    addDialog<frmEstadoCivil>(u"frmEstadoCivil");
    addDialog<frmIdioma>(u"frmIdioma");
    addDialog<frmNacionalidad>(u"frmNacionalidad");
    addDialog<frmObservacion>(u"frmObservacion");
    addDialog<frmOpcionMateria>(u"frmOpcionMateria");
    addDialog<frmPais>(u"frmPais");
    addDialog<frmPonderacion>(u"frmPonderacion");
    addDialog<frmProfesion>(u"frmProfesion");
    addDialog<frmProvincia>(u"frmProvincia");
    addDialog<frmTipoAlumno>(u"frmTipoAlumno");
    addDialog<frmTipoCentro>(u"frmTipoCentro");
    addDialog<frmTipoContrato>(u"frmTipoContrato");
    addDialog<frmTipoIncidencia>(u"frmTipoIncidencia");
    addDialog<frmTipoIva>(u"frmTipoIva");
    addDialog<frmTipoJustificacion>(u"frmTipoJustificacion");
    addDialog<frmTipoMaterialDidactico>(u"frmTipoMaterialDidactico");
    addDialog<frmTipoMiembroCentro>(u"frmTipoMiembroCentro");
    addDialog<frmTipoMotivoBaja>(u"frmTipoMotivoBaja");
    addDialog<frmTipoNivelEstudios>(u"frmTipoNivelEstudios");
    addDialog<frmTipoOcurrencia>(u"frmTipoOcurrencia");
    addDialog<frmTipoParentesco>(u"frmTipoParentesco");
    addDialog<frmTipoTarea>(u"frmTipoTarea");
    addDialog<frmTurno>(u"frmTurno");
    addDialog<frmRespConsejo>(u"frmRespConsejo");
    addDialog<frmRespInfInd>(u"frmRespInfInd");
    addUnguarded<frmConsejoOrientador1>(u"frmConsejoOrientador1");
    // No node opens these: they stand behind other dialogs, or are asked for by name.
    addUnguarded<frmConsejoOrientador>(u"frmConsejoOrientador");
    addUnguarded<frmInfIndESO>(u"frmInfIndESO");
    addUnguarded<frmInfIndPrim>(u"frmInfIndPrim");
    addUnguarded<frmSucursal>(u"frmSucursal");
    addUnguarded<frmInformeIndividual>(u"frmInformeIndividual");
}

} // namespace zv
