#include "module/Module.h"

#include "catalogues/frmCEspecializacion.h"
#include "catalogues/frmEstadoCivil.h"
#include "catalogues/frmIdioma.h"
#include "catalogues/frmPais.h"
#include "catalogues/frmProvincia.h"
#include "catalogues/frmTipoAlumno.h"
#include "catalogues/frmTipoContrato.h"
#include "catalogues/frmTipoNivelEstudios.h"
#include "session/DialogDirectory.h"
#include "suite/CentroApi.h"

namespace zv {

namespace {

template <class Dialog> void addDialog(StringView name)
{
    dialogs().add(name, {.instance = []() -> Form& { return single<Dialog>(); },
                         .ComprobarEliminacion = [] { return single<Dialog>().ComprobarEliminacion(); }});
}

} // namespace

void installModule()
{
    registerSuite();
    addDialog<frmCEspecializacion>(u"frmCEspecializacion");
    addDialog<frmEstadoCivil>(u"frmEstadoCivil");
    addDialog<frmIdioma>(u"frmIdioma");
    addDialog<frmPais>(u"frmPais");
    addDialog<frmProvincia>(u"frmProvincia");
    addDialog<frmTipoAlumno>(u"frmTipoAlumno");
    addDialog<frmTipoContrato>(u"frmTipoContrato");
    addDialog<frmTipoNivelEstudios>(u"frmTipoNivelEstudios");
}

} // namespace zv
