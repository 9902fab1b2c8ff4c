#include "zvconf/Command.h"

#include "care/Copies.h"
#include "data/Engine.h"
#include "data/Statement.h"
#include "runtime/Convert.h"
#include "runtime/System.h"
#include "runtime/Time.h"
#include "suite/Registrations.h"
#include "suite/sodium/KeyFile.h"

#include <algorithm>
#include <fstream>
#include <vector>

namespace zv::zvconf {
namespace {

namespace fs = std::filesystem;

constexpr StringView ending = u".zvcopia";
constexpr StringView dailyName = u"copia-";

fs::path pathIn(const String& word) { return {word}; }

/// The passphrase: the first line of the file of --frase; "" without one.
std::string passphraseIn(const Options& options)
{
    if (!options.has(u"--frase"))
        return {};
    const String& place = options.values(u"--frase").front();
    std::ifstream stream(pathIn(place));
    std::string line;
    if (!std::getline(stream, line) || line.empty())
        throw UsageError(u"«" + place +
                         u"» no tiene en su primera línea la frase con que se guarda la clave.");
    if (line.back() == '\r')
        line.pop_back();
    return line;
}

void tell(const care::CopyReport& report)
{
    printLine(statement(u"Comprobada: {} tablas, {} filas, tal como estaban el {}.",
                        {report.tables, report.rows,
                         momentIn(report.moment) ? localText(*momentIn(report.moment)) : report.moment}));
    if (report.head > 0)
        printLine(statement(u"Historial hasta el asiento {}:{}.", {report.head, report.link}));
    printLine(
        report.hasKey
            ? u"Lleva la clave de las enfermedades, cerrada con su frase."
            : u"No lleva la clave de las enfermedades: no está entera sin ella. Dé una frase con --frase, "
              u"o guarde la clave aparte (zvconf clave lugar dice dónde está).");
}

int daily(const Options& options, const String& folder)
{
    const String today = momentText(timeHere()).substr(0, 10);
    const fs::path file = pathIn(folder) / (String(dailyName) + today + String(ending));
    if (fs::exists(file)) {
        printLine(u"La copia de hoy ya está en " + file.u16string() + u".");
    } else {
        tell(care::takeCopy(options.values(u"--bd").front(), file, keyFileText(), passphraseIn(options)));
        printLine(u"Copia de seguridad en " + file.u16string() + u".");
    }
    std::vector<std::string> dates;
    const auto nameOf = [&](const std::string& date) {
        return String(dailyName) + fromUtf8(date) + String(ending);
    };
    for (const fs::directory_entry& each : fs::directory_iterator(pathIn(folder))) {
        const String name = each.path().filename().u16string();
        const String date = name.size() > dailyName.size() ? name.substr(dailyName.size(), 10) : String();
        if (name == nameOf(toUtf8(date)))
            dates.push_back(toUtf8(date));
    }
    const std::vector<std::string> kept = care::keptOf(dates);
    for (const std::string& each : dates)
        if (std::ranges::find(kept, each) == kept.end() && momentIn(fromUtf8(each) + u" 00:00:00")) {
            fs::remove(pathIn(folder) / nameOf(each));
            printLine(u"Quitada la copia del " + fromUtf8(each) +
                      u": quedan las de 7 días, 4 semanas y 12 meses.");
        }
    return done;
}

} // namespace

int copia(Arguments arguments)
{
    const bool named = !arguments.empty() && !arguments.front().starts_with(u"--");
    const Options options(named ? arguments.subspan(1) : arguments,
                          {{u"--bd", 1}, {u"--frase", 1}, {u"--diaria", 1}, {u"--comprobar"}});
    if (options.has(u"--diaria") && !named)
        return daily(options, options.values(u"--diaria").front());
    if (!named)
        throw UsageError(u"copia lleva el nombre del fichero que se hace, o --diaria CARPETA.");
    const fs::path file = pathIn(arguments.front());
    if (options.has(u"--comprobar")) {
        tell(care::checkCopy(file));
        return done;
    }
    tell(care::takeCopy(options.values(u"--bd").front(), file, keyFileText(), passphraseIn(options)));
    printLine(u"Copia de seguridad en " + file.u16string() + u".");
    return done;
}

namespace {

/// The key of a copy: put in place where there is none, told where there is another.
void restoreKey(const fs::path& file, const Options& options)
{
    const std::optional<std::string> key = care::keyIn(file, passphraseIn(options));
    if (!key)
        throw RuntimeError(
            cipherFailed,
            u"La frase no es la de esta copia: no se ha restaurado nada. Repita la orden con la "
            u"buena, o sin --frase para dejar la clave como está.");
    if (key->empty())
        return;
    const auto place = keyPlace();
    const std::string here = keyFileText();
    if (here == *key)
        return;
    if (!here.empty())
        throw RuntimeError(
            cipherFailed,
            u"En " + place.u16string() +
                u" hay otra clave que la de la copia: no se ha "
                u"restaurado nada. Guárdela en otro sitio y repita la orden, o repítala sin --frase.");
    const std::size_t line = key->find('\n');
    const auto parsed = CipherKey::parse(key->substr(line + 1, key->find('\n', line + 1) - line - 1));
    if (parsed && createKey(place, *parsed))
        printLine(u"La clave de las enfermedades está en " + place.u16string() + u".");
}

void refuseWhileOpen(const String& url)
{
    if (!engineOf(url).exists(locationOf(url)))
        return;
    std::vector<Registration> open;
    try {
        open = registrations(*engineOf(url).open(locationOf(url), Database::centro));
    } catch (const RuntimeError& error) {
        if (error.number() == failure::locked || error.number() == failure::connectionLost)
            throw;
        printLine(u"De lo que hay no se ha podido leer quién lo tiene abierto, y se aparta como está: " +
                  error.description());
    }
    for (const Registration& each : open)
        if (!each.gone)
            throw RuntimeError(
                failure::locked,
                statement(u"{} {} está abierta en {}: que la cierren y repita la orden, o libérela con "
                          u"«zvconf registros». No se ha restaurado nada.",
                          {each.form, each.row, each.station}));
}

} // namespace

int restaurar(Arguments arguments)
{
    if (arguments.empty() || arguments.front().starts_with(u"--"))
        throw UsageError(u"restaurar lleva el fichero de la copia.");
    const Options options(arguments.subspan(1), {{u"--bd", 1}, {u"--frase", 1}});
    const String& url = options.values(u"--bd").front();
    const fs::path file = pathIn(arguments.front());
    const care::CopyReport report = care::checkCopy(file);
    refuseWhileOpen(url);
    if (options.has(u"--frase"))
        restoreKey(file, options);
    const String kept = care::restoreCopy(file, url);
    printLine(statement(u"Restaurado en {} el centro de la copia: {} tablas, {} filas.",
                        {withoutPassword(url), report.tables, report.rows}));
    if (!kept.empty())
        printLine(u"El que había queda en " + withoutPassword(kept) +
                  u"; bórrelo cuando haya trabajado con el restaurado.");
    return done;
}

} // namespace zv::zvconf
