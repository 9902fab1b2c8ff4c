#include "catalogues/frmTipoMaterialDidactico.h"

namespace zv {

namespace {
constexpr StringView guards[] = {
    u"SELECT CodTipoMaterialDidactico FROM MaterialDidactico WHERE CodTipoMaterialDidactico={fila}"};
using recipe::step;
constexpr Step accept[] = {step::object, step::mode,    step::accepting, step::givenFocus, step::hourglass,
                           step::safe,   step::changed, step::write,     step::unload};
constexpr TextCatalogue words{
    .captions = {.nuevo = 14001, .modificado = 14002},
    .table = u"TipoMaterialDidactico",
    .key = u"IDTipoMaterialDidactico",
    .query = u"SELECT * FROM TipoMaterialDidactico WHERE IDTipoMaterialDidactico={fila}",
    .insert = u"INSERT INTO TipoMaterialDidactico (IDTipoMaterialDidactico,Nombre) VALUES ({},'{}')",
    .update = u"UPDATE TipoMaterialDidactico SET Nombre='{}' WHERE IDTipoMaterialDidactico={}",
    .guards = guards,
    .load = recipe::loadUncleared,
    .accept = accept,
    .guard = recipe::guard,
    .unload = recipe::unload,
};
} // namespace

frmTipoMaterialDidactico::frmTipoMaterialDidactico() : TextCatalogueDialog(u"frmTipoMaterialDidactico", words)
{
    assemble({{txtNombre, lblNombre, u"Descripción:", 14020, u"Nombre"}}, cmdMaterial);
}

} // namespace zv
