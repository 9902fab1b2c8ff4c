#include "zvconf/Historial.h"

#include "data/Schema.h"
#include "data/Statement.h"
#include "data/history/Cuts.h"
#include "data/history/Words.h"
#include "runtime/Convert.h"
#include "runtime/System.h"
#include "suite/Registrations.h"
#include "suite/Station.h"

#include <algorithm>

namespace zv::zvconf {
namespace {

using history::HistoryConnection;
using history::Plan;
using history::Scope;

void print(const Plan& plan, const String& indent = u"")
{
    const Seconds now = timeHere();
    for (const history::Effect& each : plan.effects)
        printLine(indent + history::told(each));
    for (const history::Obstacle& each : plan.obstacles)
        printLine(indent + history::told(each, now));
    const auto idle = [&](history::Kind kind, StringView what) {
        if (const auto found = plan.idle.find(kind); found != plan.idle.end())
            printLine(indent + statement(what, {found->second}));
    };
    idle(history::Kind::failed, u"Instrucciones que fallaron: {}. No hay en ellas nada que deshacer.");
    idle(history::Kind::missed,
         u"Cambios que no encontraron su fila: {}. No hay en ellos nada que deshacer.");
    idle(history::Kind::read, u"Lecturas de textos cifrados: {}. Leído queda.");
}

/// What the options name; nullopt where the history has nothing of it.
std::optional<Scope> scopeOf(const Options& options, Connection& centro)
{
    const auto number = [&](StringView name) { return numberFrom(options.values(name).front()); };
    if (options.has(u"--apertura"))
        return Scope{.opening = number(u"--apertura")};
    if (options.has(u"--guardado"))
        return Scope{.save = number(u"--guardado")};
    if (options.has(u"--desde")) {
        const Seconds moment = momentFrom(options.values(u"--desde").front());
        const Long first = history::firstSince(centro, momentText(moment));
        return first == 0 ? std::nullopt : std::optional(Scope{.since = first});
    }
    String table = options.values(u"--fila")[0];
    const String row = rowOf(table, options.values(u"--fila")[1]);
    const String column = options.has(u"--campo") ? options.values(u"--campo").front() : String();
    if (!column.empty() && std::ranges::none_of(schema::table(table)->columns(), [&](const auto& each) {
            return sameName(each.name, column);
        }))
        throw UsageError(u"«" + column + u"» no es una columna de " + table + u".");
    return history::lastWriteOf(centro, table, row, column);
}

/// A save that was cut is taken back as such, so that it is no longer told.
Plan carryOut(HistoryConnection& centro, const Scope& scope)
{
    if (scope.save != 0 && scope.table.empty())
        for (const history::Cut& each : history::cuts(centro, goneStations(centro)))
            if (each.save == scope.save)
                return history::takeBack(centro, each, ourselves());
    return history::undo(centro, scope, ourselves());
}

} // namespace

Opening ourselves()
{
    String user;
    for (const char* variable : {"USER", "USERNAME"})
        if (const auto name = environment(variable); name && user.empty())
            user = fromUtf8(*name) + u" (zvconf)";
    return {.userName = user.empty() ? String(u"zvconf") : user, .station = thisStation().identity};
}

int deshacerHistorial(Arguments arguments)
{
    const Options options(arguments, {{u"--bd", 1},
                                      {u"--apertura", 1},
                                      {u"--guardado", 1},
                                      {u"--fila", 2},
                                      {u"--campo", 1},
                                      {u"--desde", 1},
                                      {u"--si"}});
    int ways = 0;
    for (const StringView each : {u"--apertura", u"--guardado", u"--fila", u"--desde"})
        ways += options.has(each) ? 1 : 0;
    if (ways != 1)
        throw UsageError(u"deshacer quiere una de --apertura, --guardado, --fila y --desde.");
    if (options.has(u"--campo") && !options.has(u"--fila"))
        throw UsageError(u"--campo quiere también --fila.");
    const auto centro = openHistory(options.values(u"--bd").front());
    const std::optional<Scope> scope = scopeOf(options, *centro);
    const bool does = options.has(u"--si");
    const Plan plan = !scope ? Plan() : does ? carryOut(*centro, *scope) : history::planOf(*centro, *scope);
    print(plan);
    if (plan.effects.empty())
        printLine(u"No hay nada que deshacer.");
    else
        printLine(does ? u"Hecho." : u"No se ha cambiado nada: se hace con --si.");
    return plan.effects.empty() || !plan.obstacles.empty() ? found : done;
}

int cortadosHistorial(Arguments arguments)
{
    const Options options(arguments, {{u"--bd", 1}, {u"--deshacer"}, {u"--si"}});
    const bool undoes = options.has(u"--deshacer");
    const bool does = undoes && options.has(u"--si");
    const auto centro = openHistory(options.values(u"--bd").front());
    bool allBack = true;
    const std::vector<history::Cut> cuts = history::cuts(*centro, goneStations(*centro));
    for (const history::Cut& each : cuts) {
        printLine(history::told(each, timeHere()) +
                  statement(u" Lo hacía {} (guardado {}).", {history::whoTold(each.by), each.save}));
        if (!undoes)
            continue;
        const Plan plan = does ? history::takeBack(*centro, each, ourselves())
                               : history::planOf(*centro, {.save = each.save});
        print(plan, u"  ");
        allBack = allBack && does && plan.obstacles.empty();
    }
    if (cuts.empty())
        printLine(u"No hay ningún guardado cortado.");
    else if (does)
        printLine(u"Hecho.");
    else
        printLine(undoes ? u"No se ha cambiado nada: se hace con --si."
                         : u"Con --deshacer se ve cómo quedaría todo si se deshacen.");
    return cuts.empty() || (does && allBack) ? done : found;
}

} // namespace zv::zvconf
