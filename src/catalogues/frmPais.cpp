#include "catalogues/frmPais.h"

namespace zv {

namespace {
constexpr StringView guards[] = {u"Select * From Alumno Where CodPaisNacimiento={fila}",
                                 u"Select * From Personal Where CodPaisNacimiento={fila}",
                                 u"Select * From Direccion Where Direccion.CodPais={fila}"};
constexpr TextCatalogue words{
    .captions = {.nuevo = 4001, .modificado = 4002},
    .table = u"Pais",
    .key = u"IDPais",
    .query = u"Select * from Pais  Where IDPais={fila}",
    .insert = u"Insert into Pais (IDPais,Descripcion) values ({},'{}')",
    .update = u"Update Pais Set Descripcion='{}' Where IDPais={}",
    .guards = guards,
    .load = recipe::load,
    .accept = recipe::accept,
    .guard = recipe::guard,
    .unload = recipe::unload,
};
} // namespace

frmPais::frmPais() : TextCatalogueDialog(u"frmPais", words)
{
    assemble({{txtPais, lblPais, u"País:", 4020, u"Descripcion"}}, cmdPais);
}

} // namespace zv
