#include "catalogues/frmTipoJustificacion.h"

namespace zv {

namespace {
constexpr StringView guards[] = {
    u"SELECT codTipoJustificacion FROM IncidenciaAlumno WHERE codTipoJustificacion={fila} UNION "
    u"SELECT codTipoJustificacion FROM IncidenciaPersonal WHERE codTipoJustificacion={fila}"};
constexpr TextCatalogue words{
    .captions = {.nuevo = 13001, .modificado = 13002},
    .table = u"TipoJustificacion",
    .key = u"IDTipoJustificacion",
    .width = KeyWidth::bits32,
    .query = u"SELECT * FROM TipoJustificacion WHERE IDTipoJustificacion={fila}",
    .insert = u"INSERT INTO TipoJustificacion (IDTipoJustificacion,Descripcion) VALUES ({},'{}')",
    .update = u"UPDATE TipoJustificacion SET Descripcion='{}' WHERE IDTipoJustificacion={}",
    .guards = guards,
    .load = recipe::loadAndClose,
    .accept = recipe::acceptAndPress,
    .guard = recipe::guardAndClose,
    .unload = recipe::unloadClosed,
};
} // namespace

frmTipoJustificacion::frmTipoJustificacion() : TextCatalogueDialog(u"frmTipoJustificacion", words)
{
    assemble({{txtDescripcion, lblDescripcion, u"Descripción:", 13020, u"Descripcion"}}, cmdAceptar,
             cmdCancelar);
}

} // namespace zv
