#include "catalogues/frmIdioma.h"

namespace zv {

namespace {
constexpr StringView guards[] = {u"Select * From Centro Where CodIdioma={fila}",
                                 u"Select * From Centro_Idioma Where CodIdioma={fila}"};
constexpr TextCatalogue words{
    .captions = {.nuevo = 27001, .modificado = 27002},
    .joint = u"", // No separator: the caption's own text ends in a blank.
    .table = u"Idioma",
    .key = u"IDIdioma",
    .query = u"Select * from Idioma  Where IDIdioma={fila}",
    .insert = u"Insert into Idioma (IDIdioma,Descripcion) values ({},'{}')",
    .update = u"Update Idioma Set Descripcion='{}' Where IDIdioma={}",
    .guards = guards,
    .load = recipe::loadUncleared,
    .accept = recipe::accept,
    .guard = recipe::guard,
    .unload = recipe::unload,
};
} // namespace

frmIdioma::frmIdioma() : TextCatalogueDialog(u"frmIdioma", words)
{
    assemble({{txtIdioma, lblPais, u"Idioma:", 27003, u"Descripcion"}}, cmdIdioma);
}

} // namespace zv
