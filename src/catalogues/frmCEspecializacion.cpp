#include "catalogues/frmCEspecializacion.h"

namespace zv {

namespace {
constexpr StringView guards[] = {u"Select * From CEspecializacion_Personal Where CodCEspecializacion={}"};
constexpr TextCatalogue words{
    .captions = {},
    .table = u"CursoEspecializacion",
    .key = u"IDCEspecializacion",
    .load = u"Select * from CursoEspecializacion  Where IDCEspecializacion={}",
    .insert = u"Insert into CursoEspecializacion (IDCEspecializacion,Descripcion) values ({},'{}')",
    .update = u"Update CursoEspecializacion Set Descripcion='{}' Where IDCEspecializacion={}",
    .guards = guards,
    .blank = u"", // The row's text runs on from the caption.
};
} // namespace

frmCEspecializacion::frmCEspecializacion() : TextCatalogueDialog(u"frmCEspecializacion", words)
{
    assemble({{txtDescripcion, lblPais, u"Descripción:", 0, u"Descripcion"}}, cmdIdioma);
}

/// The captions of this dialog have no numbers.
void frmCEspecializacion::title(ResumeNext& next)
{
    next([&] {
        Caption = String(changesRow() ? u"Propiedades del Curso de Especialización"
                                      : u"Nuevo Curso de Especialización");
    });
}

} // namespace zv
