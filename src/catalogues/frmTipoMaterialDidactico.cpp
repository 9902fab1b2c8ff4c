#include "catalogues/frmTipoMaterialDidactico.h"

namespace zv {

namespace {
constexpr StringView guards[] = {
    u"SELECT CodTipoMaterialDidactico FROM MaterialDidactico WHERE CodTipoMaterialDidactico={}"};
constexpr TextCatalogue words{
    .captions = {.nuevo = 14001, .modificado = 14002},
    .table = u"TipoMaterialDidactico",
    .key = u"IDTipoMaterialDidactico",
    .load = u"SELECT * FROM TipoMaterialDidactico WHERE IDTipoMaterialDidactico={}",
    .insert = u"INSERT INTO TipoMaterialDidactico (IDTipoMaterialDidactico,Nombre) VALUES ({},'{}')",
    .update = u"UPDATE TipoMaterialDidactico SET Nombre='{}' WHERE IDTipoMaterialDidactico={}",
    .guards = guards,
    .test = EmptyTest::firstFieldThenFocus,
    .clearsErr = false,
};
} // namespace

frmTipoMaterialDidactico::frmTipoMaterialDidactico() : TextCatalogueDialog(u"frmTipoMaterialDidactico", words)
{
    assemble({{txtNombre, lblNombre, u"Descripción:", 14020, u"Nombre"}}, cmdMaterial);
}

/// A text that is still the one that was read is not written. It is compared after it was made safe, so one
/// with an apostrophe always counts as changed.
bool frmTipoMaterialDidactico::write(ResumeNext& next, const cCentroApi& api)
{
    if (createsRow() || next.condition([&] { return txtNombre.Text() != String() + field(u"Nombre"); }))
        return TextCatalogueDialog::write(next, api);
    return true;
}

} // namespace zv
