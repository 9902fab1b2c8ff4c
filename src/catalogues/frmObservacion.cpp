#include "catalogues/frmObservacion.h"

namespace zv {

namespace {
constexpr StringView guards[] = {
    u"SELECT codObservacion FROM MateriaDetalles_Observacion WHERE codObservacion={fila}"};
using recipe::step;
// Icon and helper object stand before the error mode: their failure is untrapped and reaches the host.
constexpr Step load[] = {step::icon,     step::object, step::mode, step::lock, step::title, step::texts,
                         step::existing, step::read,   step::fill, step::hold, step::close};
constexpr TextCatalogue words{
    .captions = {.nuevo = 2001, .modificado = 2002},
    .table = u"Observacion",
    .key = u"idObservacion",
    .width = KeyWidth::bits32,
    .query = u"SELECT * FROM Observacion WHERE IDObservacion={fila}",
    .readFailed = message::updateFailed, // The only dialog that reports a failed read so.
    .insert =
        u"INSERT INTO Observacion (IDObservacion,DescripcionCorta,DescripcionLarga) VALUES ({},'{}','{}')",
    .update = u"UPDATE Observacion SET DescripcionCorta='{}',DescripcionLarga='{}' WHERE IDObservacion={}",
    .guards = guards,
    .load = load,
    .accept = recipe::acceptAndPress,
    .guard = recipe::guardAndClose,
    .unload = recipe::unloadClosed,
};
} // namespace

frmObservacion::frmObservacion() : TextCatalogueDialog(u"frmObservacion", words)
{
    assemble({{txtDescripcionCorta, lblDescripcionCorta, u"Descripción corta:", 2020, u"DescripcionCorta"},
              {txtDescripcionLarga, lblDescripcionLarga, u"Descripción larga:", 2021, u"DescripcionLarga"}},
             cmdAceptar, cmdCancelar);
}

/// Late-bound call that belongs to no task of this dialog: includes staff 1, 2 and 3 in an activity. The
/// suite expects it as it stands, with the name of the class in small letters.
void frmObservacion::Form_Click()
{
    const cCentroApi api = cCentroApi::create(u"zvapi.ccentroapi");
    const auto staff = std::make_shared<std::vector<Long>>(std::initializer_list<Long>{1, 2, 3});
    const cConfiguracion& session = Configuracion();
    api.incluirpersonalenactividad(session.conLocalCentro, session.conLocalBorradoCentro, staff, 1);
}

} // namespace zv
