#include "catalogues/frmProvincia.h"

namespace zv {

namespace {
// The guard is a copy of the countries' and stays so: a province that is in use as a province is not
// protected by it.
constexpr StringView guards[] = {u"Select * From Alumno Where CodPaisNacimiento={fila}",
                                 u"Select * From Personal Where CodPaisNacimiento={fila}",
                                 u"Select * From Direccion Where Direccion.CodPais={fila}"};
constexpr TextCatalogue words{
    .captions = {.nuevo = 28001, .modificado = 28002},
    .table = u"Provincia",
    .key = u"IDProvincia",
    .query = u"Select * from Provincia  Where IDProvincia={fila}",
    .insert = u"Insert into Provincia (IDProvincia,Descripcion) values ({},'{}')",
    .update = u"Update Provincia Set Descripcion='{}' Where IDProvincia={}",
    .guards = guards,
    .load = recipe::load,
    .accept = recipe::accept,
    .guard = recipe::guard,
    .unload = recipe::unload,
};
} // namespace

frmProvincia::frmProvincia() : TextCatalogueDialog(u"frmProvincia", words)
{
    assemble({{txtProvincia, lblProvincia, u"Provincia:", 28020, u"Descripcion", 30}}, cmdProvincia);
}

} // namespace zv
