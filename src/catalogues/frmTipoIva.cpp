#include "catalogues/frmTipoIva.h"

#include "forms/Desktop.h"
#include "forms/Keys.h"
#include "session/cConstCol.h"

namespace zv {

namespace {

constexpr StringView guards[] = {u"Select * From Actividad Where CodTipoIva={fila}"};

constexpr Integer notAPercentage = 12080;
constexpr Integer aboveAHundred = 12081;
constexpr Integer rateExists = 12082;
constexpr Integer fieldName = 12020;
constexpr Integer noSign = 112;

bool endsInSign(const String& text) { return text.ends_with(u'%'); }

/// Whether the number stays below 100 with the digit appended. A pasted text may be no number: it takes no
/// digit.
bool takesDigit(const String& text, int digit) { return IsNumeric(text) && CDbl(text) * 10 + digit <= 99; }

} // namespace

const TextCatalogue& frmTipoIva::words()
{
    static const Step load[] = {step::mode,  own(&frmTipoIva::forgetRate),
                                step::icon,  step::object,
                                step::lock,  step::title,
                                step::texts, step::existing,
                                step::read,  step::fill,
                                step::hold};
    static const Step accept[] = {step::mode,
                                  step::object,
                                  step::accepting,
                                  step::safe,
                                  step::given,
                                  own(&frmTipoIva::isPercentage),
                                  own(&frmTipoIva::atMostAHundred),
                                  step::hourglass,
                                  own(&frmTipoIva::notTaken),
                                  own(&frmTipoIva::fraction),
                                  step::write,
                                  step::unload};
    static const Step unload[] = {own(&frmTipoIva::releaseIfEnabled), step::hide, step::repaint, step::close};
    static const TextCatalogue words{
        .captions = {.nuevo = 12001, .modificado = 12002},
        .table = u"TipoIva",
        .key = u"IDTipoIva",
        .query = u"Select * from TipoIva  Where IDTipoIva={fila}",
        .insert = u"Insert into TipoIva (IDTipoIva,Descripcion,Valor) values ({},'{}','{}')",
        .update = u"Update TipoIva Set Descripcion='{}', Valor='{}' Where IDTipoIva={}",
        .guards = guards,
        .load = load,
        .accept = accept,
        .guard = recipe::guard,
        .unload = unload,
    };
    return words;
}

frmTipoIva::frmTipoIva() : TextCatalogueDialog(u"frmTipoIva", words())
{
    // No number here, so that the layout is as wide as the design text asks, not as the numbered one.
    assemble({{txtTipoIva, lblTipoIva, u"Tipo de Iva:", 0, u"Descripcion"}}, cmdTipoIva);
    lblTipoIva.Tag = decimalText(fieldName);
    on(txtTipoIva.KeyPress, &frmTipoIva::txtTipoIva_KeyPress);
}

Then frmTipoIva::forgetRate(Routine& /*routine*/)
{
    strDescripcionInicial.clear();
    return Then::goOn;
}

void frmTipoIva::fill(ResumeNext& next)
{
    TextCatalogueDialog::fill(next);
    next([&] { strDescripcionInicial = CStr(field(u"Descripcion")); });
}

/// Key filter: one or two digits and a closing sign. It looks at the whole text, wherever the caret stands.
void frmTipoIva::txtTipoIva_KeyPress(Integer& KeyAscii)
{
    const String& text = txtTipoIva.Text();
    const auto key = static_cast<char16_t>(KeyAscii);
    bool discard = false;
    if (key == u'%')
        discard = text.empty() || endsInSign(text);
    else if (IsNumeric(String(1, key)))
        discard = endsInSign(text) || (!text.empty() && !takesDigit(text, key - u'0'));
    else
        discard = KeyAscii != keyAscii::backspace;
    if (discard)
        KeyAscii = 0;
}

Then frmTipoIva::refuse(Routine& routine, Integer messageId)
{
    warn(messageId, sign::information);
    routine([&] { txtTipoIva.SetFocus(); });
    return Then::leave;
}

String frmTipoIva::withoutSign() const
{
    return Left(txtTipoIva.Text(), static_cast<long>(txtTipoIva.Text().size()) - 1);
}

/// Validates the number and normalises it: a missing sign is appended.
Then frmTipoIva::isPercentage(Routine& routine)
{
    const String text = Trim(txtTipoIva.Text());
    const bool signedText = endsInSign(text);
    if (!IsNumeric(signedText ? Trim(Left(text, static_cast<long>(text.size()) - 1)) : text))
        return refuse(routine, notAPercentage);
    if (!signedText)
        routine([&] { txtTipoIva.Text = text + u"%"; });
    return Then::goOn;
}

Then frmTipoIva::atMostAHundred(Routine& routine)
{
    const String rate = Trim(withoutSign());
    if (!rate.empty() && routine.next().condition([&] { return CDbl(rate) > 100.0; }))
        return refuse(routine, aboveAHundred);
    return Then::goOn;
}

/// Duplicate check. A duplicate overwrites the session's action for good: from then on an accept takes the
/// path of an update, and the registration is not released. Nothing sets the action back.
Then frmTipoIva::notTaken(Routine& routine)
{
    if (Trim(txtTipoIva.Text()) == strDescripcionInicial)
        return Then::goOn;
    bool taken = false;
    routine([&] {
        for (fetch(u"select descripcion from tipoiva"); !taken && !rows()->Eof(); rows()->MoveNext())
            taken = String() + field(u"descripcion") == Trim(withoutSign()) + u"%";
    });
    if (!taken)
        return Then::goOn;
    MsgBox(LoadResString(rateExists), noSign, LoadResString(fieldName));
    Configuracion().bytAccion = cConstCol::NoModificado;
    MousePointer = pointer::standard;
    return Then::leave;
}

/// Rounds to a whole percentage: the fraction loses the decimals that the text keeps.
Then frmTipoIva::fraction(Routine& routine)
{
    valor_ = 0;
    routine([&] { valor_ = static_cast<Single>(CInt(withoutSign()) / 100.0); });
    return Then::goOn;
}

std::vector<Value> frmTipoIva::values() { return {Trim(withoutSign()) + u"%", CStr(valor_)}; }

/// Tests the accept button and not MarcaBloqueo, as every other dialog does.
Then frmTipoIva::releaseIfEnabled(Routine& /*routine*/)
{
    if (changesRow() && cmdTipoIva(aceptar).Enabled())
        unregisterRow();
    return Then::goOn;
}

} // namespace zv
