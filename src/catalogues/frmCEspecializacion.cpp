#include "catalogues/frmCEspecializacion.h"

namespace zv {

namespace {
constexpr StringView guards[] = {u"Select * From CEspecializacion_Personal Where CodCEspecializacion={}"};
constexpr OneFieldCatalogue words{
    .captions = {.nuevo = 0, .modificado = 0},
    .table = u"CursoEspecializacion",
    .key = u"IDCEspecializacion",
    .column = u"Descripcion",
    .load = u"Select * from CursoEspecializacion  Where IDCEspecializacion={}",
    .insert = u"Insert into CursoEspecializacion (IDCEspecializacion,Descripcion) values ({},'{}')",
    .update = u"Update CursoEspecializacion Set Descripcion='{}' Where IDCEspecializacion={}",
    .guards = guards,
};
} // namespace

frmCEspecializacion::frmCEspecializacion() : OneFieldDialog(u"frmCEspecializacion", words) { assemble(txtDescripcion, lblPais, u"Descripción:", 0, cmdIdioma); }

/// The captions of this dialog have no numbers: it sets its own, and the row's text follows without a blank.
void frmCEspecializacion::Form_Load()
{
    Hourglass wait(*this);
    ResumeNext next;
    const cCentroApi api = begin(next);
    next([&] {
        Caption = String(changesRow() ? u"Propiedades del Curso de Especialización" : u"Nuevo Curso de Especialización");
    });
    localise(next, api);
    Err().Clear();
    if (changesRow())
        showRow(next, api, u"");
}

} // namespace zv
