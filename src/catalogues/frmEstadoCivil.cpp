#include "catalogues/frmEstadoCivil.h"

namespace zv {

namespace {
constexpr TextCatalogue words{
    .captions = {.nuevo = 29001, .modificado = 29002},
    .table = u"EstadoCivil",
    .key = u"IDEstadoCivil",
    .load = u"Select * from EstadoCivil  Where IDEstadoCivil={}",
    .insert = u"Insert into EstadoCivil (IDEstadoCivil,Descripcion) values ({},'{}')",
    .update = u"Update EstadoCivil Set Descripcion='{}' Where IDEstadoCivil={}",
};
} // namespace

frmEstadoCivil::frmEstadoCivil() : TextCatalogueDialog(u"frmEstadoCivil", words)
{
    assemble({{txtIdioma, lblPais, u"Estado Civil:", 29003, u"Descripcion"}}, cmdIdioma);
}

/// This guard alone asks for no failure: a query that fails gives no rows to test, and a test that fails
/// counts as true.
bool frmEstadoCivil::ComprobarEliminacion()
{
    ResumeNext next;
    next([&] { fetch(forRow(u"Select IDPersonal From Personal Where CodEstadoCivil={}")); });
    return next.condition([&] { return rows()->Eof(); });
}

} // namespace zv
