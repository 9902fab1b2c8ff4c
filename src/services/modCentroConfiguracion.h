#pragma once

#include "runtime/Object.h"

namespace zv {

/// Localises by tag: a form and its controls get the texts of the numbers that their tags hold.
void CargarTextos(Object& form);
/// Read-only mode of a form (`blnActiva` False): fields are disabled, "Cancelar" becomes "Salir", "Modificar"
/// becomes "Consultar" in the place of the delete button. With True it does nothing.
void BloquearControles(Object& form, bool blnActiva);
/// Enciphers (True) or deciphers a text. The length of the key text is cut off both ends of what was
/// enciphered, and the key text itself is put there before it is deciphered: the cipher's key it is not, and
/// all dialogs pass "". Fails as the cipher does, and with 5 if what was enciphered is shorter than the key
/// text.
String CifrarTexto(String strTexto, bool blnCifrar, StringView strClave = u"QUIMERATEXT");

} // namespace zv
