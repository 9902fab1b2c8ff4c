#include "zvconf/Historial.h"

#include "data/Schools.h"
#include "data/Statement.h"
#include "data/history/Words.h"
#include "runtime/Convert.h"
#include "runtime/Json.h"
#include "runtime/Time.h"

#include <map>

namespace zv::zvconf {
namespace {

using history::Entry;
using history::Kind;

/// What the person asks for, beside the condition that the database itself looks at.
struct Wish {
    String condition;
    String user;
    String dialog;
};

Wish wishOf(const Options& options)
{
    Wish result;
    result.condition = u"Numero>0";
    if (options.has(u"--tabla")) {
        String table = options.values(u"--tabla").front();
        const String row = rowOf(table, options.has(u"--fila") ? options.values(u"--fila").front() : u"1");
        result.condition += u" AND " + history::ofRow(table, options.has(u"--fila") ? row : u"");
    } else if (options.has(u"--fila")) {
        throw UsageError(u"--fila quiere también --tabla.");
    }
    if (options.has(u"--dia")) {
        const String& day = options.values(u"--dia").front();
        const Seconds begin = momentFrom(day);
        if (localText(begin).substr(0, 10) != day)
            throw UsageError(u"«" + day + u"» no es un día (AAAA-MM-DD).");
        // 23 to 25 hours; the day after begins where it begins.
        const String next = localText(begin + std::chrono::hours(26)).substr(0, 10);
        result.condition += u" AND Momento>=" + textLiteral(momentText(begin)) + u" AND Momento<" +
                            textLiteral(momentText(momentFrom(next)));
    }
    if (options.has(u"--usuario"))
        result.user = options.values(u"--usuario").front();
    if (options.has(u"--ventana"))
        result.dialog = options.values(u"--ventana").front();
    return result;
}

bool meets(const Opening& opening, const Wish& wish)
{
    return (wish.dialog.empty() || sameName(opening.dialog, wish.dialog)) &&
           (wish.user.empty() || sameName(opening.userName, wish.user) ||
            decimalText(opening.user) == wish.user);
}

JsonObject jsonOf(StringView table, const history::Fields& fields)
{
    JsonObject result;
    for (const history::Field& each : fields)
        if (const auto* text = each.value.as<String>(); text && !history::isSecret(table, each.column))
            result.text(history::nameOf(table, each.column), *text);
        else
            result.raw(history::nameOf(table, each.column), each.value.isNull() ? u"null"
                                                            : text != nullptr   ? u"\"(cifrado)\""
                                                                                : literal(each.value));
    return result;
}

String jsonOf(const Entry& entry, const Opening& opening)
{
    JsonObject result;
    result.number(u"numero", entry.number)
        .text(u"momento", entry.moment)
        .text(u"clase", history::wordFor(entry.kind))
        .number(u"apertura", entry.opening)
        .number(u"guardado", entry.save)
        .text(u"usuario", opening.userName)
        .number(u"idusuario", opening.user)
        .text(u"ventana", opening.dialog)
        .text(u"puesto", opening.station)
        .text(u"tabla", entry.table)
        .text(u"fila", entry.row);
    if (entry.kind == Kind::opaque)
        return result.text(u"instruccion", entry.after).str();
    return result.object(u"antes", jsonOf(entry.table, history::fieldsIn(entry.before)))
        .object(u"despues", jsonOf(entry.table, history::fieldsIn(entry.after)))
        .str();
}

String lineOf(const Entry& entry, const Opening& opening)
{
    const auto moment = momentIn(entry.moment);
    return statement(u"{}  {}  {}  {}", {entry.number, moment ? localText(*moment) : entry.moment,
                                         history::whoTold(opening), history::told(entry)}) +
           (entry.save != 0 ? statement(u"  (guardado {})", {entry.save}) : String());
}

} // namespace

int verHistorial(Arguments arguments)
{
    const Options options(arguments, {{u"--bd", 1},
                                      {u"--tabla", 1},
                                      {u"--fila", 1},
                                      {u"--usuario", 1},
                                      {u"--ventana", 1},
                                      {u"--dia", 1},
                                      {u"--json"}});
    const Wish wish = wishOf(options);
    const bool json = options.has(u"--json");
    const School school = inspectSchool(options.values(u"--bd").front());
    std::map<Long, Opening> openings;
    Long seen = 0;
    const auto print = [&](const Entry& entry) {
        const auto [known, isNew] = openings.try_emplace(entry.opening);
        if (isNew)
            known->second = history::openingOf(*school.centro, entry.opening);
        if (!meets(known->second, wish))
            return true;
        if (json)
            printLine((seen == 0 ? u"[" : u",") + jsonOf(entry, known->second));
        else
            printLine(lineOf(entry, known->second));
        ++seen;
        return true;
    };
    withHistory(*school.centro, [&] { history::forEach(*school.centro, wish.condition, print); });
    if (json)
        printLine(seen == 0 ? u"[]" : u"]");
    else
        printLine(statement(u"Anotaciones: {}.", {seen}));
    return done;
}

} // namespace zv::zvconf
