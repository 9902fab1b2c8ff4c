#pragma once

#include "data/history/Undo.h"
#include "runtime/Time.h"

namespace zv::history {

/// What the history says to the staff: Spanish, one line each, moments in this machine's local time. A text
/// that is stored enciphered never shows, not even as it is stored.

/// A kind of entry in a word, for lists and JSON: "alta", "cambio".
StringView wordFor(Kind kind);
/// As zv::whenTold(), of a moment of the history; a text that is none is given as it stands.
String whenTold(StringView moment, Seconds now);
/// Who: "ANA en frmBanco"; without a name the user's number.
String whoTold(const Opening& opening);
/// Whether the column holds texts that are stored enciphered.
bool isSecret(StringView table, StringView column);
/// The column's name as the schema spells it: engines have it in other cases.
String nameOf(StringView table, StringView column);
/// A value of a table's column: «texto», 7, (nada), (cifrado).
String shown(StringView table, StringView column, const Value& value);
/// "Nombre: «Caja», Numero: «2100»".
String shown(StringView table, const Fields& fields);

/// "Banco IDBanco=7: Nombre: «Nuevo» -> «Viejo»", a line each.
String told(const Effect& effect);
/// What stays as it is, why, and who stands over it.
String told(const Obstacle& obstacle, Seconds now);
/// An entry for a list: "Banco IDBanco=7: cambió Nombre: «Viejo» -> «Nuevo»".
String told(const Entry& entry);

} // namespace zv::history
