#include "catalogues/frmNacionalidad.h"

namespace zv {

namespace {
constexpr StringView guards[] = {u"Select IDAlumno From Alumno Where CodNacionalidad={fila}"};
using recipe::step;
constexpr Step load[] = {step::mode,  step::icon,     step::object, step::lock, step::caption, step::texts,
                         step::clear, step::existing, step::read,   step::fill, step::hold,    step::close};
constexpr TextCatalogue words{
    .captionTexts = {.nuevo = u"Nueva Nacionalidad ", .modificado = u"Propiedades de Nacionalidad "},
    .table = u"Nacionalidad",
    .key = u"IDNacionalidad",
    .query = u"Select * from Nacionalidad  Where IDNacionalidad={fila}",
    .insert = u"Insert into Nacionalidad (IDNacionalidad,Descripcion,Abreviatura) values ({},'{}','{}')",
    .update = u"Update Nacionalidad Set Descripcion='{}',Abreviatura='{}' Where IDNacionalidad={}",
    .guards = guards,
    .load = load,
    .accept = recipe::accept,
    .guard = recipe::guardAndClose,
    .unload = recipe::unloadClosed,
};
} // namespace

frmNacionalidad::frmNacionalidad() : TextCatalogueDialog(u"frmNacionalidad", words)
{
    assemble({{txtNacionalidad, lblPais, u"Nacionalidad:", 0, u"Descripcion"},
              {.box = txtAbreviatura,
               .label = Label1,
               .caption = u"Abreviatura:",
               .captionId = 0,
               .column = u"Abreviatura",
               .width = 3,
               .mandatory = false,
               .selectsAll = false}},
             cmdNacionalidad);
}

/// No separator: the captions end in a blank. An abbreviation that is Null is an empty one.
void frmNacionalidad::fill(ResumeNext& next)
{
    next([&] { Caption = Caption() + field(u"Descripcion"); });
    next([&] { txtNacionalidad.Text = field(u"Descripcion"); });
    next([&] { txtAbreviatura.Text = String() + field(u"Abreviatura"); });
}

} // namespace zv
