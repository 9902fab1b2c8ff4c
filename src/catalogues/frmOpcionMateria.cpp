#include "catalogues/frmOpcionMateria.h"

namespace zv {

namespace {
using recipe::step;
// Icon and helper object stand before the error mode: their failure is untrapped and reaches the host. No
// step `hold`: the row is never registered.
constexpr Step load[] = {step::icon,  step::object,   step::mode, step::lock, step::title,
                         step::texts, step::existing, step::read, step::fill, step::close};
} // namespace

const TextCatalogue& frmOpcionMateria::words()
{
    static const Step unload[] = {own(&frmOpcionMateria::hideAnyway), step::repaint};
    static const TextCatalogue words{
        .captions = {.nuevo = 3001, .modificado = 3002},
        .table = u"OpcionMateria",
        .key = u"IDOM",
        .query = u"SELECT * FROM OpcionMateria WHERE IDOM={fila}",
        .insert =
            u"INSERT INTO OpcionMateria (IDOM,Descripcion,DescripcionCorta,DescripcionLarga,DescripcionActa) "
            u"VALUES ({},'{}','{}','{}','{}')",
        .update = u"UPDATE OpcionMateria "
                  u"SET Descripcion='{}',DescripcionCorta='{}',DescripcionLarga='{}',DescripcionActa='{}' "
                  u"WHERE IDOM={}",
        .load = load,
        .accept = recipe::acceptAndPress,
        .unload = unload,
    };
    return words;
}

frmOpcionMateria::frmOpcionMateria() : TextCatalogueDialog(u"frmOpcionMateria", words())
{
    assemble({{txtNombre, lblNombre, u"Nombre de opción:", 3020, u"Descripcion"},
              {txtAbreviatura, lblAbreviatura, u"Abreviatura:", 3021, u"DescripcionCorta", 7},
              {txtDescripcion, lblDescripcion, u"Descripción:", 3022, u"DescripcionLarga"},
              {txtDescripcionActa, lblDescripcionActa, u"Descripcion para Acta:", 3023, u"DescripcionActa"}},
             cmdAceptar, cmdCancelar);
}

/// Hides without testing Visible; without a registration there is nothing to release.
Then frmOpcionMateria::hideAnyway(Routine& /*routine*/)
{
    Hide();
    return Then::goOn;
}

} // namespace zv
