#include "catalogues/frmNacionalidad.h"

namespace zv {

namespace {
constexpr StringView guards[] = {u"Select IDAlumno From Alumno Where CodNacionalidad={}"};
constexpr TextCatalogue words{
    .captions = {},
    .table = u"Nacionalidad",
    .key = u"IDNacionalidad",
    .load = u"Select * from Nacionalidad  Where IDNacionalidad={}",
    .insert = u"Insert into Nacionalidad (IDNacionalidad,Descripcion,Abreviatura) values ({},'{}','{}')",
    .update = u"Update Nacionalidad Set Descripcion='{}',Abreviatura='{}' Where IDNacionalidad={}",
    .guards = guards,
    .blank = u"", // The captions end in one.
    .keepsRows = false,
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

/// The captions of this dialog have no numbers.
void frmNacionalidad::title(ResumeNext& next)
{
    next([&] { Caption = String(changesRow() ? u"Propiedades de Nacionalidad " : u"Nueva Nacionalidad "); });
}

void frmNacionalidad::fill(ResumeNext& next)
{
    next([&] { Caption = Caption() + field(u"Descripcion"); });
    next([&] { txtNacionalidad.Text = field(u"Descripcion"); });
    next([&] { txtAbreviatura.Text = String() + field(u"Abreviatura"); });
}

} // namespace zv
