#include "catalogues/frmTipoAlumno.h"

namespace zv {

namespace {
constexpr StringView guards[] = {u"Select * From Alumno where CodTipoAlumno={}"};
constexpr OneFieldCatalogue words{
    .captions = {.nuevo = 9001, .modificado = 9002},
    .table = u"TipoAlumno",
    .key = u"IDTipoAlumno",
    .column = u"Descripcion",
    .load = u"Select * from TipoAlumno  Where IDTipoAlumno={}",
    .insert = u"Insert into TipoAlumno (IDTipoAlumno,Descripcion) values ({},'{}')",
    .update = u"Update TipoAlumno Set Descripcion='{}' where IDTipoAlumno={}",
    .guards = guards,
};
} // namespace

frmTipoAlumno::frmTipoAlumno() : OneFieldDialog(u"frmTipoAlumno", words) { assemble(txtTipoAlumno, lblTipoAlumno, u"Descripción:", 9020, cmdTipoAlumno); }

} // namespace zv
