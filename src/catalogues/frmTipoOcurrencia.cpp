#include "catalogues/frmTipoOcurrencia.h"

namespace zv {

namespace {
constexpr StringView guards[] = {
    u"Select CodTipoOcurrencia From OcurrenciaCalendario where CodTipoOcurrencia={fila}"};
constexpr TextCatalogue words{
    .captions = {.nuevo = 19001, .modificado = 19002},
    .table = u"TipoOcurrencia",
    .key = u"IDTO",
    .query = u"Select * from TipoOcurrencia  Where IDTO={fila}",
    .insert = u"Insert into TipoOcurrencia (IDTO,Nombre,Lectivo) values({},'{}',{})",
    .update = u"Update TipoOcurrencia Set Nombre='{}', Lectivo={} where IDTO={}",
    .guards = guards,
    .load = recipe::loadUncleared,
    .accept = recipe::accept,
    .guard = recipe::guard,
    .unload = recipe::unload,
};
} // namespace

frmTipoOcurrencia::frmTipoOcurrencia() : TextCatalogueDialog(u"frmTipoOcurrencia", words)
{
    chkLectivo.Caption = u"Lectivo";
    chkLectivo.Tag = u"19021";
    assemble({{txtNombre, lblMotivo(0), u"Ocurrencia:", 19020, u"Nombre"}}, cmdOcurrencia,
             [this](Layout& layout) { layout.line({&chkLectivo}); });
}

void frmTipoOcurrencia::fill(ResumeNext& next)
{
    TextCatalogueDialog::fill(next);
    const bool teachingDay = next.condition([&] { return isTrue(field(u"Lectivo")); });
    next([&] { chkLectivo.Value = static_cast<Integer>(teachingDay); });
}

} // namespace zv
