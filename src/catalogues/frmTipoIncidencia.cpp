#include "catalogues/frmTipoIncidencia.h"

namespace zv {

namespace {
constexpr StringView guards[] = {
    u"Select * From IncidenciaAlumno where IncidenciaAlumno.CodTipoIncidencia={fila}",
    u"Select * From IncidenciaPersonal where  IncidenciaPersonal.CodTipoIncidencia={fila}"};
using recipe::step;
// Escapes the texts before it looks at the button: on cancel too.
constexpr Step accept[] = {step::mode,  step::object,    step::safe,  step::accepting,
                           step::given, step::hourglass, step::write, step::unload};
constexpr TextCatalogue words{
    .captions = {.nuevo = 11001, .modificado = 11002},
    .table = u"TipoIncidencia",
    .key = u"IDTipoIncidencia",
    .query = u"Select * from TipoIncidencia  Where IDTipoIncidencia={fila}",
    .insert = u"Insert into TipoIncidencia "
              u"(IDTipoIncidencia,Nombre,DescripcionCorta,Justificante,Boletin,Ausencia) values "
              u"({},'{}','{}',{},{},{})",
    .update = u"Update TipoIncidencia Set Nombre='{}',DescripcionCorta='{}',Justificante={}, "
              u"Boletin={},Ausencia={} Where IDTipoIncidencia={}",
    .guards = guards,
    .load = recipe::loadUncleared,
    .accept = accept,
    .guard = recipe::guard,
    .unload = recipe::unload,
};
} // namespace

frmTipoIncidencia::frmTipoIncidencia() : TextCatalogueDialog(u"frmTipoIncidencia", words)
{
    chkJustificante.Caption = u"Justificante";
    chkJustificante.Tag = u"11022";
    chkBoletin.Caption = u"Boletín";
    chkBoletin.Tag = u"11023";
    chkAusencia.Caption = u"Ausencia";
    assemble({{txtIncidencia(0), lblIncidencia(0), u"Nombre:", 11020, u"Nombre"},
              {.box = txtIncidencia(1),
               .label = lblIncidencia(1),
               .caption = u"Descripción corta:",
               .captionId = 11021,
               .column = u"DescripcionCorta",
               .mandatory = false}},
             cmdIncidencia, [this](Layout& layout) {
                 layout.line({&chkJustificante, &chkBoletin, &chkAusencia});
             });
}

void frmTipoIncidencia::fill(ResumeNext& next)
{
    TextCatalogueDialog::fill(next);
    const auto tick = [&](CheckBox& box, StringView column) {
        if (next.condition([&] { return isTrue(field(column)); }))
            next([&] { box.Value = Integer{1}; });
    };
    tick(chkJustificante, u"Justificante");
    tick(chkBoletin, u"Boletin");
    tick(chkAusencia, u"Ausencia");
}

std::vector<Value> frmTipoIncidencia::values()
{
    return {txtIncidencia(0).Text(), txtIncidencia(1).Text(), chkJustificante.Value(), chkBoletin.Value(),
            chkAusencia.Value()};
}

} // namespace zv
