#include "catalogues/frmTipoCentro.h"

namespace zv {

namespace {
constexpr StringView guards[] = {u"SELECT codTipoCentro FROM Centro WHERE codTipoCentro={fila}"};
} // namespace

const TextCatalogue& frmTipoCentro::words()
{
    static const Step accept[] = {step::mode,      step::object, step::accepting,
                                  step::hourglass, step::safe,   own(&frmTipoCentro::nameGiven),
                                  step::write,     step::unload};
    static const TextCatalogue words{
        .captions = {.nuevo = 25001, .modificado = 25002},
        .table = u"tipocentro",
        .key = u"IDTipocentro",
        .query = u"Select * from Tipocentro  Where IDTipocentro={fila}",
        .insert = u"insert into tipocentro(idtipocentro,nombre) values ({}, '{}')",
        .update = u"Update TipoCentro Set Nombre='{}' where IDTipocentro={}",
        .guards = guards,
        .load = recipe::loadAndClose,
        .accept = accept,
        .guard = recipe::guardAndClose,
        .unload = recipe::unloadClosed,
    };
    return words;
}

frmTipoCentro::frmTipoCentro() : TextCatalogueDialog(u"frmTipoCentro", words())
{
    constexpr int accepts = 1;
    assemble({{txtTipoCentro, lblTipoCentro, u"Descripción:", 9020, u"Nombre"}}, cmdTipoCentro, nullptr,
             accepts);
}

void frmTipoCentro::fill(ResumeNext& next)
{
    next([&] {
        for (; !rows()->Eof(); rows()->MoveNext())
            next([&] { txtTipoCentro.Text = field(u"Nombre"); });
    });
    next([&] { Caption = Caption + u" " + txtTipoCentro.Text(); });
}

/// Validates the untrimmed text: blanks are a name here.
Then frmTipoCentro::nameGiven(Routine& /*routine*/)
{
    if (!txtTipoCentro.Text().empty())
        return Then::goOn;
    warn(message::fieldsMissing, sign::information);
    MousePointer = pointer::standard;
    return Then::leave;
}

} // namespace zv
