#pragma once

#include "runtime/Object.h"

namespace zv {

/// Replaces the numbers that a form's and its controls' tags hold by the texts of those numbers.
void CargarTextos(Object& form);
/// With False, turns the form read-only: fields are disabled, "Cancelar" becomes "Salir", "Modificar" becomes
/// "Consultar" in the place of the delete button. With True it does nothing.
void BloquearControles(Object& form, bool blnActiva);
/// Enciphers (True) or deciphers a text. The length of the key text is cut off both ends of what was
/// enciphered, and the key text itself is put there before it is deciphered: the cipher's key it is not, and
/// all dialogs pass "". Fails as the cipher does, and with 5 if what was enciphered is shorter than the key
/// text.
String CifrarTexto(String strTexto, bool blnCifrar, StringView strClave = u"QUIMERATEXT");

} // namespace zv
