#include "catalogues/frmTipoParentesco.h"

namespace zv {

namespace {
constexpr StringView guards[] = {
    u"SELECT codTipoParentesco FROM MiembroFamilia WHERE codTipoParentesco={fila}"};
constexpr TextCatalogue words{
    .captions = {.nuevo = 20001, .modificado = 20002},
    .table = u"TipoParentesco",
    .key = u"IDTP",
    .width = KeyWidth::bits32,
    .query = u"SELECT * FROM TipoParentesco WHERE IDTP={fila}",
    .insert = u"INSERT INTO TipoParentesco (IDTP,Nombre) VALUES ({},'{}')",
    .update = u"UPDATE TipoParentesco SET Nombre='{}' WHERE IDTP={}",
    .guards = guards,
    .load = recipe::loadAndClose,
    .accept = recipe::acceptAndPress,
    .guard = recipe::guardAndClose,
    .unload = recipe::unloadClosed,
};
} // namespace

frmTipoParentesco::frmTipoParentesco() : TextCatalogueDialog(u"frmTipoParentesco", words)
{
    assemble({{txtParentesco, lblParentesco, u"Parentesco:", 20020, u"Nombre"}}, cmdAceptar, cmdCancelar);
}

} // namespace zv
