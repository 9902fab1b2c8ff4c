#include "catalogues/frmTurno.h"

#include <algorithm>

namespace zv {

namespace {
constexpr StringView guards[] = {u"Select CodTurno From Seccion where CodTurno={fila}"};
using recipe::step;
// The dirty check `changed` sees the text only: after a change of the kind alone the dialog closes unsaved,
// unless the text has an apostrophe, which `safe` has doubled by then.
constexpr Step accept[] = {step::mode, step::object,  step::accepting, step::givenFocus, step::hourglass,
                           step::safe, step::changed, step::write,     step::unload};
constexpr TextCatalogue words{
    .captions = {.nuevo = 22001, .modificado = 22002},
    .table = u"Turno",
    .key = u"IDTurno",
    .query = u"Select * from Turno  Where IDTurno={fila}",
    .insert = u"Insert into Turno  values ({},'{}',{})",
    .update = u"Update Turno Set Descripcion='{}', TipoTurno={} where IDTurno={}",
    .guards = guards,
    .load = recipe::loadUncleared,
    .accept = accept,
    .guard = recipe::guard,
    .unload = recipe::unload,
};
} // namespace

frmTurno::frmTurno() : TextCatalogueDialog(u"frmTurno", words)
{
    optDiurno.Caption = u"Diurno";
    optVespertino.Caption = u"Vespertino";
    optNocturno.Caption = u"Nocturno";
    optDistancia.Caption = u"A Distancia";
    optDiurno.Value = true;
    assemble({{txtTurno, lblTurno, u"Turno:", 22020, u"Descripcion"}}, cmdTurno, [this](Layout& layout) {
        layout.line({&optDiurno, &optVespertino, &optNocturno, &optDistancia});
    });
}

void frmTurno::fill(ResumeNext& next)
{
    TextCatalogueDialog::fill(next);
    next([&] {
        const Value kind = field(u"tipoturno");
        const Long number = kind.isNull() ? 0 : CLng(kind);
        const bool known = number >= 1 && number <= static_cast<Long>(kinds().size());
        kinds()[known ? static_cast<std::size_t>(number - 1) : 0]->Value = true;
    });
}

std::vector<Value> frmTurno::values()
{
    const auto options = kinds();
    const auto chosen =
        std::find_if(options.begin(), options.end(), [](OptionButton* option) { return option->Value(); });
    const auto kind = chosen == options.end() ? 1 : chosen - options.begin() + 1;
    return {txtTurno.Text(), static_cast<Long>(kind)};
}

} // namespace zv
