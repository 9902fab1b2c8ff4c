#include "data/Statement.h"
#include "zvconf/Command.h"
#include "zvconf/ComprobarDatos.h"
#include "zvconf/Interruptions.h"

#include "data/SchemaCheck.h"
#include "data/Schools.h"
#include "data/history/Log.h"
#include "runtime/Convert.h"
#include "suite/Registrations.h"
#include "suite/Sample.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <stdexcept>

namespace zv::zvconf {
namespace {

constexpr Option database{u"--bd", 1};

const String& urlOf(const Options& options) { return options.values(database.name).front(); }

Long rowNumber(const String& text)
{
    const std::string digits = toUtf8(text);
    Long row = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), row);
    if (error != std::errc() || end != digits.data() + digits.size())
        throw UsageError(u"«" + text + u"» no es el número de una fila.");
    return row;
}

void refuseInterrupted()
{
    if (Interruptions::came())
        throw std::runtime_error("Se ha interrumpido: no se ha creado nada.");
}

int list(Connection& centro)
{
    const std::vector<Registration> all = registrations(centro);
    for (const Registration& each : all)
        printLine(statement(u"{} {}: usuario {}, estación {}, desde {}{}",
                            {each.form, each.row, each.user, each.station, each.moment,
                             each.gone ? u" (la estación ya ha terminado)" : u""}));
    printLine(statement(u"Filas en uso: {}.", {static_cast<Long>(all.size())}));
    if (!all.empty())
        printLine(statement(
            u"La fila de una estación que ha terminado queda libre para el primero que la pida. De una "
            u"de otro equipo se sabe cuando lleva {} minutos sin dar señal.",
            {Long{longestSilence.count()}}));
    return done;
}

int releaseOne(Connection& centro, const std::vector<String>& row)
{
    const bool released = release(centro, row[0], rowNumber(row[1]));
    printLine(row[0] + u" " + row[1] +
              (released ? u" queda libre."
                        : u" no estaba en uso: «zvconf registros» dice las que lo están, "
                          u"con su nombre entero."));
    return released ? done : found;
}

void tell(StringView pattern, const std::vector<Lack>& lacks)
{
    String names;
    for (const Lack& each : lacks)
        names += (names.empty() ? u"" : u", ") + each.name;
    if (!lacks.empty())
        printLine(statement(pattern, {names}));
}

/// Names what the school works without or, where it is to be repaired, adds it. The history is its office's
/// decision.
void tellOrAdd(const Lacks& lacks, const String& url, bool adds)
{
    std::vector<Lack> parts = lacks.indexes;
    if (adds) {
        if (lacks.registrations)
            parts.push_back(*lacks.registrations);
        const School school = parts.empty() ? School() : openSchool(url);
        for (const Lack& each : parts)
            baseOf(school, each.which)->executeNative(each.statement);
        tell(u"Se ha añadido: {}.", parts);
    } else {
        tell(u"Faltan índices: {}. Sin ellos va todo, más despacio. (Los hace --reparar.)", parts);
        if (lacks.registrations)
            printLine(
                u"La tabla RegistroActivo no está todavía: la hace el primero que abre una fila. Si a los "
                u"usuarios no se les deja crear tablas, hágala antes con --reparar (docs/escala.md dice cómo "
                u"hacerla a mano): sin ella nadie puede cambiar ninguna fila.");
    }
    if (lacks.history)
        printLine(u"No lleva historial: lo activa «zvconf historial activar».");
}

} // namespace

int crear(Arguments arguments)
{
    const Options options(arguments, {database, {u"--ejemplo"}});
    const bool sample = options.has(u"--ejemplo");
    const Interruptions interruptions;
    createSchool(urlOf(options), [&](School& school) {
        refuseInterrupted();
        if (sample)
            fillSample(school);
        history::activate(*school.centro);
        refuseInterrupted();
    });
    printLine(u"Creado " + String(sample ? u"el centro de ejemplo" : u"un centro vacío") + u" en " +
              withoutPassword(urlOf(options)) + u".");
    return done;
}

int comprobar(Arguments arguments)
{
    const Options options(arguments, {database, {u"--datos"}, {u"--json"}, {u"--resumen"}, {u"--reparar"}});
    const bool data = options.has(u"--datos");
    for (const StringView each : {u"--json", u"--resumen"})
        if (!data && options.has(each))
            throw UsageError(String(each) + u" quiere también --datos.");
    if (options.has(u"--json") && options.has(u"--resumen"))
        throw UsageError(u"--json y --resumen no van juntas.");
    const School school = inspectSchool(urlOf(options));
    Engine& engine = engineOf(urlOf(options));
    const std::vector<String> damage = checkDamage(school, engine);
    std::vector<String> findings = damage;
    // Only on an undamaged database: queries for its tables would fail.
    if (damage.empty()) {
        findings = checkSchool(school, engine);
        std::ranges::move(checkAccess(school, engine), std::back_inserter(findings));
    }
    if (data && findings.empty())
        return comprobarDatos(urlOf(options),
                              options.has(u"--json")      ? Telling::json
                              : options.has(u"--resumen") ? Telling::count
                                                          : Telling::each,
                              options.has(u"--reparar"));
    if (data)
        throw std::runtime_error(
            toUtf8(findings.front()) +
            " Sin eso no se miran los datos: «zvconf comprobar» sin --datos lo dice todo.");
    for (const String& each : findings)
        printLine(each);
    if (findings.empty())
        printLine(u"Las bases de datos tienen todo lo que hace falta.");
    else
        printLine(statement(u"Defectos: {}. Pida que los corrija quien lleva las bases de datos.",
                            {static_cast<Long>(findings.size())}));
    if (damage.empty()) {
        Lacks lacks = lacksOf(school, engine);
        lacks.history &= findings.empty(); // What hurts is not to be lost among what may wait.
        tellOrAdd(lacks, urlOf(options), options.has(u"--reparar"));
    }
    return findings.empty() ? done : found;
}

int registros(Arguments arguments)
{
    const Options options(arguments, {database, {u"--liberar", 2}, {u"--liberar-todo"}});
    if (options.has(u"--liberar") && options.has(u"--liberar-todo"))
        throw UsageError(u"--liberar y --liberar-todo no van juntas.");
    if (!options.has(u"--liberar") && !options.has(u"--liberar-todo"))
        return list(*inspectSchool(urlOf(options)).centro);
    const School school = openSchool(urlOf(options));
    if (options.has(u"--liberar"))
        return releaseOne(*school.centro, options.values(u"--liberar"));
    printLine(statement(u"Filas liberadas: {}.", {Long{releaseAll(*school.centro)}}));
    return done;
}

} // namespace zv::zvconf
