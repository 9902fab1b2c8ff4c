#include "catalogues/frmTipoMotivoBaja.h"

namespace zv {

namespace {
constexpr StringView guards[] = {u"Select CodTipoMotivoBaja From Alumno where CodTipoMotivoBaja={fila}"};
constexpr TextCatalogue words{
    .captions = {.nuevo = 16001, .modificado = 16002},
    .table = u"TipoMotivoBaja",
    .key = u"IDTipoMotivoBaja",
    .query = u"Select * from TipoMotivoBaja  Where IDTipoMotivoBaja={fila}",
    .insert = u"Insert into TipoMotivoBaja (IDTipoMotivoBaja,Nombre,Descripcion) values ({},'{}','{}')",
    .update = u"Update TipoMotivoBaja Set Nombre='{}',Descripcion='{}' where IDTipoMotivoBaja={}",
    .guards = guards,
    .load = recipe::loadUncleared,
    .accept = recipe::accept,
    .guard = recipe::guard,
    .unload = recipe::unload,
};
} // namespace

frmTipoMotivoBaja::frmTipoMotivoBaja() : TextCatalogueDialog(u"frmTipoMotivoBaja", words)
{
    assemble({{txtNombre, lblMotivo(0), u"Nombre:", 16020, u"Nombre"},
              {.box = txtDescripcion,
               .label = lblMotivo(1),
               .caption = u"Descripcion:",
               .captionId = 16021,
               .column = u"Descripcion",
               .mandatory = false}},
             cmdMotivo);
}

} // namespace zv
