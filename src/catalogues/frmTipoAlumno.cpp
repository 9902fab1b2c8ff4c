#include "catalogues/frmTipoAlumno.h"

namespace zv {

namespace {
constexpr StringView guards[] = {u"Select * From Alumno where CodTipoAlumno={fila}"};
constexpr TextCatalogue words{
    .captions = {.nuevo = 9001, .modificado = 9002},
    .table = u"TipoAlumno",
    .key = u"IDTipoAlumno",
    .query = u"Select * from TipoAlumno  Where IDTipoAlumno={fila}",
    .insert = u"Insert into TipoAlumno (IDTipoAlumno,Descripcion) values ({},'{}')",
    .update = u"Update TipoAlumno Set Descripcion='{}' where IDTipoAlumno={}",
    .guards = guards,
    .load = recipe::load,
    .accept = recipe::acceptSafeFirst,
    .guard = recipe::guard,
    .unload = recipe::unload,
};
} // namespace

frmTipoAlumno::frmTipoAlumno() : TextCatalogueDialog(u"frmTipoAlumno", words)
{
    assemble({{txtTipoAlumno, lblTipoAlumno, u"Descripción:", 9020, u"Descripcion"}}, cmdTipoAlumno);
}

} // namespace zv
