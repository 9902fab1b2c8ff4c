#include "data/Statement.h"
#include "zvconf/Command.h"
#include "zvconf/ComprobarDatos.h"
#include "zvconf/System.h"

#include "data/SchemaCheck.h"
#include "data/Schools.h"
#include "data/history/Log.h"
#include "runtime/Convert.h"
#include "suite/Registrations.h"
#include "suite/Sample.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <csignal>
#include <ctime>
#include <iterator>

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

/// RAII guard that defers signals (Ctrl-C and the like), so that destructors remove what was begun; a second
/// one, a second later at least, ends the process at once.
class Interruptions {
public:
    Interruptions() { handle(note); }
    Interruptions(const Interruptions&) = delete;
    Interruptions& operator=(const Interruptions&) = delete;
    ~Interruptions() { handle(SIG_DFL); }
    static void check()
    {
        if (came != 0)
            throw std::runtime_error("Se ha interrumpido: no se ha creado nada.");
    }

private:
    static void handle(void (*handler)(int))
    {
        for (const int signal : endingSignals())
            std::signal(signal, handler);
    }
    /// Signal handler. Debounced: some senders signal both the process and its group.
    static void note(int signal)
    {
        // Some systems take the handler away when they call it.
        std::signal(signal, note);
        const std::time_t now = std::time(nullptr);
        if (came == 0) {
            came = now;
        } else if (now > came + 1) {
            std::signal(signal, SIG_DFL);
            std::raise(signal);
        }
    }

    inline static std::atomic<std::time_t> came = 0;
    static_assert(decltype(came)::is_always_lock_free);
};

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
    printLine(row[0] + u" " + row[1] + (released ? u" queda libre." : u" no estaba en uso."));
    return released ? done : found;
}

} // namespace

int crear(Arguments arguments)
{
    const Options options(arguments, {database, {u"--ejemplo"}});
    const bool sample = options.has(u"--ejemplo");
    const Interruptions interruptions;
    createSchool(urlOf(options), [&](School& school) {
        Interruptions::check();
        if (sample)
            fillSample(school);
        history::activate(*school.centro);
        Interruptions::check();
    });
    printLine(u"Creado " + String(sample ? u"el centro de ejemplo" : u"un centro vacío") + u" en " +
              withoutPassword(urlOf(options)) + u".");
    return done;
}

int comprobar(Arguments arguments)
{
    const Options options(arguments, {database, {u"--datos"}, {u"--json"}, {u"--reparar"}});
    const bool data = options.has(u"--datos");
    if (!data && (options.has(u"--json") || options.has(u"--reparar")))
        throw UsageError(u"--json y --reparar quieren también --datos.");
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
        return comprobarDatos(urlOf(options), options.has(u"--json"), options.has(u"--reparar"));
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
    if (damage.empty() && !hasRegister(school, engine))
        printLine(u"La tabla RegistroActivo no está todavía: la hace el primero que abre una fila. Si a los "
                  u"usuarios no se les deja crear tablas, créela antes (docs/escala.md dice cómo): sin ella "
                  u"nadie puede cambiar ninguna fila.");
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
