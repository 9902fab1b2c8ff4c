#include "catalogues/frmTipoNivelEstudios.h"

namespace zv {

namespace {
// A product of two tables: while one of them is empty no row is found, and every level may be deleted.
constexpr StringView guards[] = {
    u"Select * From Personal,MiembroFamilia where MiembroFamilia.CodTipoNivelEstudios={fila} or "
    u"Personal.CodTipoNivelEstudios={fila}"};
constexpr TextCatalogue words{
    .captions = {.nuevo = 17001, .modificado = 17002},
    .table = u"TipoNivelEstudios",
    .key = u"IDTipoNivelEstudios",
    .query = u"Select * from TipoNivelEstudios  Where IDTipoNivelEstudios={fila}",
    .insert = u"Insert into TipoNivelEstudios (IDTipoNivelEstudios,Nombre) values ({},'{}')",
    .update = u"Update TipoNivelEstudios Set Nombre='{}' where IDTipoNivelEstudios={}",
    .guards = guards,
    .load = recipe::load,
    .accept = recipe::accept,
    .guard = recipe::guard,
    .unload = recipe::unload,
};
} // namespace

frmTipoNivelEstudios::frmTipoNivelEstudios() : TextCatalogueDialog(u"frmTipoNivelEstudios", words)
{
    assemble({{txtNombre, lblMiembro, u"Nivel de Estudios:", 17020, u"Nombre"}}, cmdNivel);
}

} // namespace zv
