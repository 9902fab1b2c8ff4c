#include "catalogues/frmPonderacion.h"

#include "data/DataError.h"
#include "forms/Desktop.h"
#include "forms/Keys.h"

#include <algorithm>

namespace zv {

namespace {

constexpr StringView guards[] = {
    u"SELECT codPonderacion FROM prematriculacion_ponderacion WHERE codPonderacion={fila} "
    u"UNION SELECT codPonderacion FROM Ponderacion_Centro WHERE codPonderacion={fila}"};

bool isDigitOrPoint(char16_t unit) { return (unit >= u'0' && unit <= u'9') || unit == u'.'; }
bool isLetter(char16_t unit) { return (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z'); }

/// Injection check: the score stands unquoted in its statement, and pasting brings any text. A number passes,
/// and so does a word, which the database refuses; what would end the statement or be evaluated to another
/// number does not.
bool canStandBare(StringView score)
{
    constexpr StringView values[] = {u"null", u"true", u"false", u"oid", u"rowid"};
    if (std::ranges::all_of(score, isLetter))
        return std::ranges::none_of(values, [&](StringView value) { return sameName(score, value); });
    if (score.starts_with(u'-') || score.starts_with(u'+'))
        score.remove_prefix(1);
    return std::ranges::all_of(score, isDigitOrPoint);
}

} // namespace

const TextCatalogue& frmPonderacion::words()
{
    static const Step load[] = {step::object,   step::mode, step::icon, step::lock, step::title, step::texts,
                                step::existing, step::read, step::fill, step::hold, step::close};
    static const Step accept[] = {step::object,    step::mode, own(&frmPonderacion::textsGiven),
                                  step::hourglass, step::safe, step::write,
                                  step::press};
    static const TextCatalogue words{
        .captions = {.nuevo = 5001, .modificado = 5002},
        .table = u"ponderacion",
        .key = u"idPonderacion",
        .width = KeyWidth::bits32,
        .query = u"SELECT * FROM ponderacion WHERE IDponderacion={fila}",
        .insert = u"INSERT INTO ponderacion (IDPonderacion,descripcion,puntuacion) VALUES ({},'{}',{})",
        .update = u"UPDATE ponderacion SET descripcion='{}',puntuacion={} WHERE IDPonderacion={}",
        .guards = guards,
        .load = load,
        .accept = accept,
        .guard = recipe::guardAndClose,
        .unload = recipe::unloadClosed,
    };
    return words;
}

frmPonderacion::frmPonderacion() : TextCatalogueDialog(u"frmPonderacion", words())
{
    txtPuntuacion.RightAligned = true;
    assemble({{txtDescripcion, lblPonderacion, u"Ponderacion:", 5020, u"descripcion"},
              {txtPuntuacion, lblPuntuacion, u"Puntuación:", 5021, u"Puntuacion", 5}},
             cmdAceptar, cmdCancelar);
    on(txtPuntuacion.KeyDown, &frmPonderacion::txtPuntuacion_KeyDown);
    on(txtPuntuacion.KeyPress, &frmPonderacion::txtPuntuacion_KeyPress);
}

/// Key filter: discards the arrows, so that the caret cannot be moved; the delete key clears the whole field.
void frmPonderacion::txtPuntuacion_KeyDown(Integer& KeyCode)
{
    if (KeyCode >= keyCode::firstArrow && KeyCode <= keyCode::lastArrow)
        KeyCode = 0;
    if (KeyCode == keyCode::deleteKey) {
        KeyCode = 0;
        txtPuntuacion.Text = String();
    }
}

/// Input mask "dd,dd": the second digit brings the comma with it, and Backspace over the comma takes that
/// digit too. A discarded key (code 0) in a field of one character takes the same way, and the text ends at
/// the code 0: the digit stays alone.
void frmPonderacion::txtPuntuacion_KeyPress(Integer& KeyAscii)
{
    if (KeyAscii != keyAscii::backspace && !IsNumeric(String(1, static_cast<char16_t>(KeyAscii))))
        KeyAscii = 0;
    const String text = txtPuntuacion.Text();
    if (KeyAscii != keyAscii::backspace && text.size() == 1) {
        txtPuntuacion.Text = text + static_cast<char16_t>(KeyAscii) + u",";
        KeyAscii = 0;
    }
    if (KeyAscii == keyAscii::backspace && text.ends_with(u','))
        txtPuntuacion.Text = Left(text, 1);
    SendKeys(u"{END}");
}

/// Validates the boxes named "txt…"; an empty one gets the focus.
Then frmPonderacion::textsGiven(Routine& routine)
{
    for (Control* control : Controls) {
        const auto* box = dynamic_cast<const TextBox*>(control);
        if (box == nullptr || Left(box->Name(), 3) != u"txt" || !isBlank(*box))
            continue;
        warn(message::fieldsMissing, sign::information);
        routine([&] { control->SetFocus(); });
        return Then::leave;
    }
    return Then::goOn;
}

std::vector<Value> frmPonderacion::values()
{
    const String score = Replace(txtPuntuacion.Text(), u",", u".");
    if (!canStandBare(Trim(score)))
        throw DataError(failure::badStatement, {}, u"la puntuación no es un número", score);
    return {txtDescripcion.Text(), score};
}

} // namespace zv
