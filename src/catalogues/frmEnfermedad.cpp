#include "catalogues/frmEnfermedad.h"

#include "services/modCentroConfiguracion.h"

namespace zv {

namespace {

using recipe::step;
// Icon and helper object stand before the error mode: their failure is untrapped and reaches the host.
constexpr Step load[] = {step::icon,     step::object, step::mode, step::lock, step::title, step::texts,
                         step::existing, step::read,   step::fill, step::hold, step::close};
// Only the first field is mandatory: the description may stay empty.
constexpr Step accept[] = {step::object, step::mode,  step::given, step::hourglass,
                           step::safe,   step::write, step::press};
constexpr TextCatalogue words{
    .captions = {.nuevo = 26001, .modificado = 26002},
    .table = u"Enfermedad",
    .key = u"IDEnfermedad",
    .width = KeyWidth::bits32,
    .query = u"SELECT * FROM Enfermedad WHERE IDEnfermedad={fila}",
    .insert = u"INSERT INTO Enfermedad (IDEnfermedad,Nombre,Descripcion) VALUES ({},'{}','{}')",
    .update = u"UPDATE Enfermedad SET Nombre='{}',Descripcion='{}' WHERE IDEnfermedad={}",
    .load = load,
    .accept = accept,
    .unload = recipe::unloadClosed,
};

/// Enciphered and escaped: the cipher's output may hold apostrophes, whatever the box held.
Value enciphered(const TextBox& box) { return doubled(CifrarTexto(box.Text(), true, u"")); }

} // namespace

frmEnfermedad::frmEnfermedad() : TextCatalogueDialog(u"frmEnfermedad", words)
{
    txtDescripcion.MultiLine = true;
    assemble({{txtNombre, lblEnfermedad(0), u"Nombre:", 24020, u"Nombre"},
              {.box = txtDescripcion,
               .label = lblEnfermedad(1),
               .caption = u"Descripción:",
               .captionId = 3022,
               .column = u"Descripcion",
               .width = 200,
               .mandatory = false,
               .selectsAll = false}},
             cmdAceptar, cmdCancelar);
    cmdCancelar.Cancel = false;
    txtDescripcion.GotFocus.bind([this] { txtDescripcion_GotFocus(); });
}

void frmEnfermedad::fill(ResumeNext& next)
{
    next([&] { Caption = Caption() + u" " + field(u"Nombre"); });
    next([&] { txtNombre.Text = CifrarTexto(CStr(field(u"Nombre")), false, u""); });
    next([&] { txtDescripcion.Text = CifrarTexto(CStr(field(u"Descripcion")), false, u""); });
}

/// A cipher that fails throws before the statement exists, so that no row is written with empty texts.
std::vector<Value> frmEnfermedad::values() { return {enciphered(txtNombre), enciphered(txtDescripcion)}; }

/// Takes the default role from the accept button for good: from here on Enter makes a line, and no longer
/// accepts, in whichever box.
void frmEnfermedad::txtDescripcion_GotFocus()
{
    txtDescripcion.SelStart = Long{0};
    txtDescripcion.SelLength = static_cast<Long>(txtDescripcion.Text().size());
    cmdAceptar.Default = false;
}

} // namespace zv
