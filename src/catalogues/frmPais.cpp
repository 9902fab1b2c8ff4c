#include "catalogues/frmPais.h"

namespace zv {

namespace {
constexpr StringView guards[] = {u"Select * From Alumno Where CodPaisNacimiento={}",
                                 u"Select * From Personal Where CodPaisNacimiento={}",
                                 u"Select * From Direccion Where Direccion.CodPais={}"};
constexpr OneFieldCatalogue words{
    .captions = {.nuevo = 4001, .modificado = 4002},
    .table = u"Pais",
    .key = u"IDPais",
    .column = u"Descripcion",
    .load = u"Select * from Pais  Where IDPais={}",
    .insert = u"Insert into Pais (IDPais,Descripcion) values ({},'{}')",
    .update = u"Update Pais Set Descripcion='{}' Where IDPais={}",
    .guards = guards,
};
} // namespace

frmPais::frmPais() : OneFieldDialog(u"frmPais", words) { assemble(txtPais, lblPais, u"País:", 4020, cmdPais); }

} // namespace zv
