#include "catalogues/frmCEspecializacion.h"

namespace zv {

namespace {
constexpr StringView guards[] = {u"Select * From CEspecializacion_Personal Where CodCEspecializacion={fila}"};
using recipe::step;
constexpr Step load[] = {step::mode,  step::icon,     step::object, step::lock, step::caption, step::texts,
                         step::clear, step::existing, step::read,   step::fill, step::hold};
constexpr TextCatalogue words{
    .captionTexts = {.nuevo = u"Nuevo Curso de Especialización",
                     .modificado = u"Propiedades del Curso de Especialización"},
    .joint = u"", // No separator: the row's text runs on from the caption.
    .table = u"CursoEspecializacion",
    .key = u"IDCEspecializacion",
    .query = u"Select * from CursoEspecializacion  Where IDCEspecializacion={fila}",
    .insert = u"Insert into CursoEspecializacion (IDCEspecializacion,Descripcion) values ({},'{}')",
    .update = u"Update CursoEspecializacion Set Descripcion='{}' Where IDCEspecializacion={}",
    .guards = guards,
    .load = load,
    .accept = recipe::accept,
    .guard = recipe::guard,
    .unload = recipe::unload,
};
} // namespace

frmCEspecializacion::frmCEspecializacion() : TextCatalogueDialog(u"frmCEspecializacion", words)
{
    assemble({{txtDescripcion, lblPais, u"Descripción:", 0, u"Descripcion"}}, cmdIdioma);
}

} // namespace zv
