#include "catalogues/frmEstadoCivil.h"

namespace zv {

const TextCatalogue& frmEstadoCivil::words()
{
    static const Step guard[] = {step::mode, own(&frmEstadoCivil::askUntested)};
    static const TextCatalogue words{
        .captions = {.nuevo = 29001, .modificado = 29002},
        .table = u"EstadoCivil",
        .key = u"IDEstadoCivil",
        .query = u"Select * from EstadoCivil  Where IDEstadoCivil={fila}",
        .insert = u"Insert into EstadoCivil (IDEstadoCivil,Descripcion) values ({},'{}')",
        .update = u"Update EstadoCivil Set Descripcion='{}' Where IDEstadoCivil={}",
        .load = recipe::load,
        .accept = recipe::accept,
        .guard = guard,
        .unload = recipe::unload,
    };
    return words;
}

frmEstadoCivil::frmEstadoCivil() : TextCatalogueDialog(u"frmEstadoCivil", words())
{
    assemble({{txtIdioma, lblPais, u"Estado Civil:", 29003, u"Descripcion"}}, cmdIdioma);
}

/// The only guard that does not test Err: a query that fails leaves no rows, and in resume-next mode a
/// condition that fails counts as true.
Then frmEstadoCivil::askUntested(Routine& routine)
{
    routine([&] { fetch(forRow(u"Select IDPersonal From Personal Where CodEstadoCivil={fila}")); });
    routine.answer = routine.next().condition([&] { return rows()->Eof(); });
    return Then::goOn;
}

} // namespace zv
