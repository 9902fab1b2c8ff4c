#include "catalogues/frmProfesion.h"

namespace zv {

namespace {
constexpr StringView guards[] = {u"SELECT codprofesion FROM miembrofamilia WHERE codprofesion={fila}"};
using recipe::step;
constexpr Step load[] = {step::object,   step::mode, step::icon, step::lock, step::title, step::texts,
                         step::existing, step::read, step::fill, step::hold, step::close};
constexpr TextCatalogue words{
    .captions = {.nuevo = 6001, .modificado = 6002},
    .table = u"profesion",
    .key = u"idprofesion",
    .width = KeyWidth::bits32,
    .query = u"SELECT * FROM profesion WHERE idprofesion={fila}",
    .insert = u"INSERT INTO profesion (IDProfesion,nombre) VALUES ({},'{}')",
    .update = u"UPDATE profesion SET nombre='{}' WHERE IDProfesion={}",
    .guards = guards,
    .load = load,
    .accept = recipe::acceptAndPress,
    .guard = recipe::guardAndClose,
    .unload = recipe::unloadClosed,
};
} // namespace

frmProfesion::frmProfesion() : TextCatalogueDialog(u"frmProfesion", words)
{
    assemble({{txtProfesion, lblProfesion, u"Profesión:", 6020, u"nombre"}}, cmdAceptar, cmdCancelar);
}

} // namespace zv
