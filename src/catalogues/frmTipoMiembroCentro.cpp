#include "catalogues/frmTipoMiembroCentro.h"

namespace zv {

namespace {
constexpr StringView guards[] = {
    u"Select CodTipoMiembroCentro From Personal where CodTipoMiembroCentro={fila}"};
using recipe::step;
constexpr Step accept[] = {step::mode,      step::object, step::accepting, step::given,
                           step::hourglass, step::safe,   step::write,     step::unload};
constexpr TextCatalogue words{
    .captions = {.nuevo = 15001, .modificado = 15002},
    .table = u"TipoMiembroCentro",
    .key = u"IDTMC",
    .query = u"Select * from TipoMiembroCentro  Where IDTMC={fila}",
    .insert = u"Insert into TipoMiembroCentro  values ({},'{}',{})",
    .update = u"Update TipoMiembroCentro Set Tipo={},Nombre='{}' where IDTMC={}",
    .guards = guards,
    .load = recipe::loadUncleared,
    .accept = accept,
    .guard = recipe::guard,
    .unload = recipe::unload,
};
} // namespace

frmTipoMiembroCentro::frmTipoMiembroCentro() : TextCatalogueDialog(u"frmTipoMiembroCentro", words)
{
    Frame1.Caption = u"Tipo de Miembro:";
    optAdmin.Caption = u"Personal de administración";
    optSub.Caption = u"Personal subalterno";
    optOtro.Caption = u"Otro personal";
    optAdmin.Value = true;
    assemble({{txtMiembro, lblMiembro, u"Ocupacion:", 15020, u"Nombre"}}, cmdMiembro, [this](Layout& layout) {
        layout.frame(Frame1, std::move(Layout(Frame1).line({&optAdmin, &optSub, &optOtro})));
    });
}

void frmTipoMiembroCentro::fill(ResumeNext& next)
{
    TextCatalogueDialog::fill(next);
    next([&] {
        // No default branch: another number, or Null, leaves the option of the design.
        switch (CLng(field(u"tipo"))) {
        case 1:
            optAdmin.Value = true;
            break;
        case 2:
            optSub.Value = true;
            break;
        case 3:
            optOtro.Value = true;
            break;
        default:
            break;
        }
    });
}

std::vector<Value> frmTipoMiembroCentro::values()
{
    const Long kind = optOtro.Value() ? 3 : optSub.Value() ? 2 : 1;
    if (createsRow())
        return {txtMiembro.Text(), kind};
    return {kind, txtMiembro.Text()};
}

} // namespace zv
