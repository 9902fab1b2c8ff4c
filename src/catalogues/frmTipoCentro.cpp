#include "catalogues/frmTipoCentro.h"

namespace zv {

namespace {
constexpr StringView guards[] = {u"SELECT codTipoCentro FROM Centro WHERE codTipoCentro={}"};
constexpr TextCatalogue words{
    .captions = {.nuevo = 25001, .modificado = 25002},
    .table = u"tipocentro",
    .key = u"IDTipocentro",
    .load = u"Select * from Tipocentro  Where IDTipocentro={}",
    .insert = u"insert into tipocentro(idtipocentro,nombre) values ({}, '{}')",
    .update = u"Update TipoCentro Set Nombre='{}' where IDTipocentro={}",
    .guards = guards,
    .clearsErr = false,
    .keepsRows = false,
};
} // namespace

frmTipoCentro::frmTipoCentro() : TextCatalogueDialog(u"frmTipoCentro", words)
{
    design({{txtTipoCentro, lblTipoCentro, u"Descripción:", 9020, u"Nombre"}}, cmdTipoCentro(1),
           cmdTipoCentro(0));
    on(cmdTipoCentro, &CommandButton::Click, &frmTipoCentro::cmdTipoCentro_Click);
}

void frmTipoCentro::fill(ResumeNext& next)
{
    next([&] {
        for (; !rows()->Eof(); rows()->MoveNext())
            next([&] { txtTipoCentro.Text = field(u"Nombre"); });
    });
    next([&] { Caption = Caption + u" " + txtTipoCentro.Text(); });
}

/// The text is not trimmed before it is asked for: blanks are a name here.
void frmTipoCentro::cmdTipoCentro_Click(int Index)
{
    constexpr int accepts = 1;
    ResumeNext next;
    cCentroApi api;
    next([&] { api = cCentroApi::create(); });
    if (Index == accepts) {
        MousePointer = Integer{11};
        makeSafe(next, api);
        if (txtTipoCentro.Text().empty()) {
            warn(message::fieldsMissing, sign::information);
            MousePointer = Integer{0};
            return;
        }
        if (!write(next, api))
            return;
    }
    next([&] { Unload(); });
}

} // namespace zv
