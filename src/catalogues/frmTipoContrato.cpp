#include "catalogues/frmTipoContrato.h"

namespace zv {

namespace {
constexpr StringView guards[] = {u"Select CodTipoContrato From Personal where CodTipoContrato={fila}"};
constexpr TextCatalogue words{
    .captions = {.nuevo = 10001, .modificado = 10002},
    .table = u"TipoContrato",
    .key = u"IDTipoContrato",
    .query = u"Select * from TipoContrato  Where IDTipoContrato={fila}",
    .insert = u"Insert into TipoContrato (IDTipoContrato,Nombre) values ({},'{}')",
    .update = u"Update TipoContrato Set Nombre='{}' where IDTipoContrato={}",
    .guards = guards,
    .load = recipe::load,
    .accept = recipe::acceptSafeFirst,
    .guard = recipe::guard,
    .unload = recipe::unload,
};
} // namespace

frmTipoContrato::frmTipoContrato() : TextCatalogueDialog(u"frmTipoContrato", words)
{
    assemble({{txtContrato, lblContrato, u"Contrato:", 10020, u"Nombre"}}, cmdContrato);
}

} // namespace zv
