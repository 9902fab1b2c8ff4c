#include "data/history/Words.h"

#include "data/Schema.h"
#include "data/Statement.h"
#include "runtime/Convert.h"

#include <array>

namespace zv::history {
namespace {

constexpr StringView enciphered = u"Enfermedad";

String change(StringView table, const Fields& from, const Fields& to)
{
    String result;
    for (const Field& each : from) {
        const Value* const now = valueOf(to, each.column);
        result += (result.empty() ? u"" : u"; ") + nameOf(table, each.column) + u": " +
                  shown(table, each.column, each.value) + u" -> " +
                  (now == nullptr ? u"?" : shown(table, each.column, *now));
    }
    return result;
}

/// A clause of the history for display; one that was erased says so.
Fields fieldsOrNone(StringView text)
{
    try {
        return fieldsIn(text);
    } catch (const RuntimeError&) {
        return {};
    }
}

} // namespace

StringView wordFor(Kind kind)
{
    constexpr std::array<StringView, 11> words{u"",        u"apertura", u"alta",     u"cambio",      u"baja",
                                               u"lectura", u"fallo",    u"sin fila", u"instrucción", u"fin",
                                               u"olvido"};
    // What somebody else wrote into the table may be no kind at all.
    const auto place = static_cast<std::size_t>(kind);
    return place < words.size() ? words.at(place) : StringView();
}

String whenTold(StringView moment, Seconds now)
{
    const auto time = momentIn(moment);
    return time ? zv::whenTold(*time, now) : String(moment);
}

String whoTold(const Opening& opening)
{
    const String who = !opening.userName.empty() ? opening.userName
                       : opening.user != 0       ? u"el usuario " + decimalText(opening.user)
                                                 : String(u"alguien");
    return opening.dialog.empty() ? who : who + u" en " + opening.dialog;
}

bool isSecret(StringView table, StringView column)
{
    return sameName(table, enciphered) &&
           !sameName(column, schema::table(enciphered)->columns().front().name);
}

String nameOf(StringView table, StringView column)
{
    if (const schema::Table* const known = schema::table(table))
        for (const schema::Column& each : known->columns())
            if (sameName(each.name, column))
                return String(each.name);
    return String(column);
}

String shown(StringView table, StringView column, const Value& value)
{
    if (value.isNull() || value.isEmpty())
        return u"(nada)";
    const auto* const text = value.as<String>();
    if (text == nullptr)
        return literal(value);
    return isSecret(table, column) ? String(u"(cifrado)") : u"«" + *text + u"»";
}

String shown(StringView table, const Fields& fields)
{
    String result;
    for (const Field& each : fields)
        result += (result.empty() ? u"" : u"; ") + nameOf(table, each.column) + u": " +
                  shown(table, each.column, each.value);
    return result;
}

String told(const Effect& effect)
{
    const String row = effect.table + u" " + effect.row + u": ";
    switch (effect.act) {
    case Effect::Act::setBack:
        return row + change(effect.table, effect.from, effect.to);
    case Effect::Act::remove:
        return row + u"la fila se quita (" + shown(effect.table, effect.from) + u")";
    case Effect::Act::insert:
        break;
    }
    return row + u"la fila vuelve (" + shown(effect.table, effect.to) + u")";
}

String told(const Obstacle& obstacle, Seconds now)
{
    using Why = Obstacle::Why;
    const Entry& entry = obstacle.entry;
    if (obstacle.why == Why::notUnderstood)
        return u"No se puede deshacer una instrucción que el historial sólo tiene como texto: " + entry.after;
    const String place = entry.table + u" " + entry.row +
                         (obstacle.column.empty() ? u"" : u", " + nameOf(entry.table, obstacle.column)) +
                         u": ";
    if (obstacle.why == Why::erased)
        return place + u"no se puede deshacer: lo que había se ha borrado del historial.";
    const String who = obstacle.by.entry == 0
                           ? String(u"un programa sin historial")
                           : whoTold(obstacle.by.opening) + u", " + whenTold(obstacle.by.moment, now);
    if (obstacle.why == Why::rowGone)
        return place + u"se deja: la fila ya no está; la quitó " + who + u".";
    if (obstacle.why == Why::rowThere)
        return place + u"se deja: hay otra fila con esa clave; la puso " + who + u".";
    return place + u"se deja " + shown(entry.table, obstacle.column, obstacle.stands) + u"; lo escribió " +
           who + u".";
}

String told(const Entry& entry)
{
    String row = entry.table + (entry.row.empty() ? u"" : u" " + entry.row) + u": ";
    const Fields before = fieldsOrNone(entry.before);
    const Fields after = fieldsOrNone(entry.after);
    const bool gone = before.empty() && after.empty();
    const String none = u"(borrado del historial)";
    switch (entry.kind) {
    case Kind::opened: {
        const Value* const dialog = valueOf(after, u"Dialogo");
        const String name = dialog == nullptr ? String() : CStr(*dialog);
        return gone ? none : name.empty() ? u"empieza, sin ventana" : u"abre " + name;
    }
    case Kind::added:
        return row + u"fila nueva: " + (gone ? none : shown(entry.table, after));
    case Kind::changed:
        return row + u"cambia " + (gone ? none : change(entry.table, before, after));
    case Kind::removed:
        return row + u"se quita la fila: " + (gone ? none : shown(entry.table, before));
    case Kind::read:
        return row + u"se leen los textos cifrados";
    case Kind::failed: {
        const Value* const why = valueOf(before, u"Motivo");
        return row + u"falló" + (why == nullptr ? String() : u": " + CStr(*why));
    }
    case Kind::missed:
        return row + u"la fila que se iba a cambiar no estaba: " + (gone ? none : shown(entry.table, after));
    case Kind::opaque:
        return u"instrucción: " + (entry.after.empty() ? none : entry.after);
    case Kind::ended:
        return u"termina el guardado";
    case Kind::erased:
        return row + u"se borran del historial los textos anteriores";
    }
    return row;
}

} // namespace zv::history
