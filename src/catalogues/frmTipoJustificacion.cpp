#include "catalogues/frmTipoJustificacion.h"

namespace zv {

namespace {
constexpr StringView guards[] = {
    u"SELECT codTipoJustificacion FROM IncidenciaAlumno WHERE codTipoJustificacion={} UNION "
    u"SELECT codTipoJustificacion FROM IncidenciaPersonal WHERE codTipoJustificacion={}"};
constexpr TextCatalogue words{
    .captions = {.nuevo = 13001, .modificado = 13002},
    .table = u"TipoJustificacion",
    .key = u"IDTipoJustificacion",
    .load = u"SELECT * FROM TipoJustificacion WHERE IDTipoJustificacion={}",
    .insert = u"INSERT INTO TipoJustificacion (IDTipoJustificacion,Descripcion) VALUES ({},'{}')",
    .update = u"UPDATE TipoJustificacion SET Descripcion='{}' WHERE IDTipoJustificacion={}",
    .guards = guards,
    .longKey = true,
    .test = EmptyTest::everyBox,
    .clearsErr = false,
    .keepsRows = false,
};
} // namespace

frmTipoJustificacion::frmTipoJustificacion() : TextCatalogueDialog(u"frmTipoJustificacion", words)
{
    assemble({{txtDescripcion, lblDescripcion, u"Descripción:", 13020, u"Descripcion"}}, cmdAceptar,
             cmdCancelar);
}

} // namespace zv
