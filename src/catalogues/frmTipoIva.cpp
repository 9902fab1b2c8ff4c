#include "catalogues/frmTipoIva.h"

#include "forms/Desktop.h"
#include "forms/Layout.h"
#include "session/cConstCol.h"

namespace zv {

namespace {

constexpr StringView guards[] = {u"Select * From Actividad Where CodTipoIva={}"};

constexpr Integer notAPercentage = 12080;
constexpr Integer aboveAHundred = 12081;
constexpr Integer rateExists = 12082;
constexpr Integer fieldName = 12020;
constexpr Integer noSign = 112;

bool endsInSign(const String& text) { return text.ends_with(u'%'); }

/// A text that was pasted may be no number: no digit goes behind it.
bool takesDigit(const String& text, int digit) { return IsNumeric(text) && CDbl(text) * 10 + digit <= 99; }

} // namespace

frmTipoIva::frmTipoIva() : CatalogueDialog(u"frmTipoIva")
{
    designField(lblTipoIva, u"Tipo de Iva:", fieldName, txtTipoIva, 50);
    designButtons(cmdTipoIva(aceptar), cmdTipoIva(cancelar));
    on(txtTipoIva.KeyPress, &frmTipoIva::txtTipoIva_KeyPress);
    on(cmdTipoIva, &CommandButton::Click, &frmTipoIva::cmdTipoIva_Click);
    Layout(*this).row(lblTipoIva, txtTipoIva).buttons(cmdTipoIva(aceptar), cmdTipoIva(cancelar));
}

bool frmTipoIva::ComprobarEliminacion() { return unreferenced(guards); }

void frmTipoIva::Form_Load()
{
    Hourglass wait(*this);
    ResumeNext next;
    strDescripcionInicial.clear();
    const cCentroApi api = prelude(next, {.nuevo = 12001, .modificado = 12002});
    if (!changesRow() || !readRow(next, forRow(u"Select * from TipoIva  Where IDTipoIva={}")))
        return;
    next([&] { Caption = Caption + u" " + field(u"Descripcion"); });
    next([&] { txtTipoIva.Text = field(u"Descripcion"); });
    next([&] { strDescripcionInicial = CStr(field(u"Descripcion")); });
    registerRow(next, api, cmdTipoIva(aceptar));
}

/// One or two digits and a closing sign. The whole text counts, wherever the caret stands.
void frmTipoIva::txtTipoIva_KeyPress(Integer& KeyAscii)
{
    constexpr Integer backspace = 8;
    const String& text = txtTipoIva.Text();
    const auto key = static_cast<char16_t>(KeyAscii);
    bool discard = false;
    if (key == u'%')
        discard = text.empty() || endsInSign(text);
    else if (IsNumeric(String(1, key)))
        discard = endsInSign(text) || (!text.empty() && !takesDigit(text, key - u'0'));
    else
        discard = KeyAscii != backspace;
    if (discard)
        KeyAscii = 0;
}

void frmTipoIva::cmdTipoIva_Click(int Index)
{
    ResumeNext next;
    cCentroApi api;
    next([&] { api = cCentroApi::create(); });
    if (Index == aceptar) {
        makeSafe(next, api);
        if (!rateGiven(next))
            return;
        const String rate = Trim(withoutSign());
        if (!rate.empty() && next.condition([&] { return CDbl(rate) > 100.0; })) {
            refuse(next, aboveAHundred);
            return;
        }
        MousePointer = Integer{11};
        if (!rateNotTaken(next, rate) || !write(next, api, rate))
            return;
    }
    next([&] { Unload(); });
}

bool frmTipoIva::refuse(ResumeNext& next, Integer messageId)
{
    warn(messageId, sign::information);
    next([&] { txtTipoIva.SetFocus(); });
    return false;
}

String frmTipoIva::withoutSign() const
{
    return Left(txtTipoIva.Text(), static_cast<long>(txtTipoIva.Text().size()) - 1);
}

bool frmTipoIva::rateGiven(ResumeNext& next)
{
    const String text = Trim(txtTipoIva.Text());
    if (text.empty()) {
        warn(message::fieldsMissing, sign::information);
        return false;
    }
    if (endsInSign(text))
        return IsNumeric(Trim(Left(text, static_cast<long>(text.size()) - 1))) ||
               refuse(next, notAPercentage);
    if (!IsNumeric(text))
        return refuse(next, notAPercentage);
    next([&] { txtTipoIva.Text = text + u"%"; });
    return true;
}

/// A rate that exists ends the dialog's action for good: from then on an accept takes the way of a change
/// that is none, and the row is no longer released. Nothing sets the action back.
bool frmTipoIva::rateNotTaken(ResumeNext& next, const String& rate)
{
    if (Trim(txtTipoIva.Text()) == strDescripcionInicial)
        return true;
    bool taken = false;
    next([&] {
        for (fetch(u"select descripcion from tipoiva"); !taken && !rows()->Eof(); rows()->MoveNext())
            taken = String() + field(u"descripcion") == rate + u"%";
    });
    if (!taken)
        return true;
    MsgBox(LoadResString(rateExists), noSign, LoadResString(fieldName));
    Configuracion().bytAccion = cConstCol::NoModificado;
    MousePointer = Integer{0};
    return false;
}

bool frmTipoIva::write(ResumeNext& next, const cCentroApi& api, const String& rate)
{
    // A whole percentage: the fraction forgets the decimals that the text keeps.
    Single valor = 0;
    next([&] { valor = static_cast<Single>(CInt(withoutSign()) / 100.0); });
    const String fraction = CStr(valor);
    const String text = rate + u"%";
    if (!createsRow())
        return update(next, [&] {
            return statement(u"Update TipoIva Set Descripcion='{}', Valor='{}' Where IDTipoIva={}",
                             {text, fraction, Configuracion().lngRowData});
        });
    insert<Integer>(next, api, u"TipoIva", u"IDTipoIva", CInt, [&](Integer id) {
        return statement(u"Insert into TipoIva (IDTipoIva,Descripcion,Valor) values ({},'{}','{}')",
                         {id, text, fraction});
    });
    return true;
}

/// Whether the row is released hangs on the button here, not on the marker.
void frmTipoIva::Form_Unload()
{
    if (changesRow() && cmdTipoIva(aceptar).Enabled())
        unregisterRow();
    leaveScreen();
    closeRows();
}

} // namespace zv
