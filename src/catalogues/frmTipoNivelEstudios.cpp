#include "catalogues/frmTipoNivelEstudios.h"

namespace zv {

namespace {
constexpr StringView guards[] = {u"Select * From Personal,MiembroFamilia where MiembroFamilia.CodTipoNivelEstudios={} or Personal.CodTipoNivelEstudios={}"};
constexpr OneFieldCatalogue words{
    .captions = {.nuevo = 17001, .modificado = 17002},
    .table = u"TipoNivelEstudios",
    .key = u"IDTipoNivelEstudios",
    .column = u"Nombre",
    .load = u"Select * from TipoNivelEstudios  Where IDTipoNivelEstudios={}",
    .insert = u"Insert into TipoNivelEstudios (IDTipoNivelEstudios,Nombre) values ({},'{}')",
    .update = u"Update TipoNivelEstudios Set Nombre='{}' where IDTipoNivelEstudios={}",
    .guards = guards,
};
} // namespace

frmTipoNivelEstudios::frmTipoNivelEstudios() : OneFieldDialog(u"frmTipoNivelEstudios", words) { assemble(txtNombre, lblMiembro, u"Nivel de Estudios:", 17020, cmdNivel); }

} // namespace zv
