#include "zvconf/Command.h"

#include "care/copies/Copies.h"
#include "data/Schools.h"
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

/// The passphrase: the first line of the file of --frase; "" without one. Marks and blanks that an editor
/// adds are no part of it.
std::string passphraseIn(const Options& options)
{
    if (!options.has(u"--frase"))
        return {};
    const String& place = options.values(u"--frase").front();
    std::ifstream stream(pathIn(place));
    if (!stream)
        throw RuntimeError(failure::otherData,
                           u"«" + place + u"» no se puede leer: compruebe el nombre y el permiso.");
    std::string line;
    std::getline(stream, line);
    if (line.starts_with("\xEF\xBB\xBF"))
        line.erase(0, 3);
    line.erase(line.find_last_not_of(" \t\r") + 1);
    if (line.empty())
        throw UsageError(u"«" + place +
                         u"» no tiene en su primera línea la frase con que se guarda la clave.");
    return line;
}

/// What a copy is to keep of the key, or why it cannot.
struct KeyToKeep {
    std::string text;
    String trouble;
};

KeyToKeep keyToKeep(const Options& options)
{
    if (!options.has(u"--frase"))
        return {};
    try {
        checkKey(inspectSchool(options.values(u"--bd").front()));
        readKey(keyPlace());
        return {keyFileText(), {}};
    } catch (const RuntimeError& error) {
        if (error.number() != cipherFailed)
            throw;
        return {{}, error.description()};
    }
}

void tellFaults(const care::CopyReport& report)
{
    for (const std::vector<String>* lines : {&report.leftOut, &report.faults})
        for (const String& each : *lines)
            printLine(each);
}

/// What a copy holds, and what it comes to.
int tell(const care::CopyReport& report)
{
    tellFaults(report);
    if (report.faults.empty())
        printLine(statement(u"Comprobada: {} tablas, {} filas, tal como estaban el {}.",
                            {report.tables, report.rows, localText(*momentIn(report.moment))}));
    else
        printLine(statement(u"DEFECTUOSA: tiene lo que había el {}, que no estaba como debe. No quite las "
                            u"copias de antes.",
                            {localText(*momentIn(report.moment))}));
    if (report.head > 0)
        printLine(statement(u"Historial hasta el asiento {}:{}.", {report.head, report.link}));
    return report.faults.empty() ? done : found;
}

int take(const Options& options, const fs::path& file)
{
    const std::string passphrase = passphraseIn(options);
    const KeyToKeep key = keyToKeep(options);
    const care::CopyReport report =
        care::takeCopy(options.values(u"--bd").front(), file, key.text, passphrase);
    const int result = tell(report);
    if (report.hasKey)
        printLine(u"Lleva la clave de las enfermedades, cerrada con su frase.");
    else if (!key.trouble.empty())
        printLine(statement(u"{}. {}", {withoutKey, key.trouble}));
    else
        printLine(
            statement(u"{}: no está entera sin ella. Dé una frase con --frase, o guarde la clave aparte "
                      u"(zvconf clave lugar dice dónde está).",
                      {withoutKey}));
    printLine(u"Copia de seguridad en " + file.u16string() + u".");
    return key.trouble.empty() ? result : found;
}

/// Checks a copy, and that its key opens with the passphrase, if one is given.
int check(const Options& options, const fs::path& file)
{
    const std::string passphrase = passphraseIn(options);
    try {
        const care::CopyReport report = care::checkCopy(file);
        const int result = tell(report);
        if (!report.hasKey) {
            printLine(statement(u"{}.", {withoutKey}));
            return passphrase.empty() ? result : found;
        }
        if (passphrase.empty()) {
            printLine(u"Lleva la clave de las enfermedades; con --frase se comprueba que la frase la abre.");
            return result;
        }
        const bool opens = care::keyIn(file, passphrase).has_value();
        printLine(opens ? u"Lleva la clave de las enfermedades, y la frase la abre."
                        : u"Lleva la clave de las enfermedades, y esa no es su frase.");
        return opens ? result : found;
    } catch (const care::BadCopy& error) {
        printLine(error.description());
        return found;
    }
}

String dailyFile(StringView date) { return String(dailyName) + String(date) + String(ending); }

/// Dates of the whole copies of a school in its folder. Those of another are refused; what is no copy is
/// told, counts for none and stays.
std::vector<std::string> datesIn(const fs::path& folder, const String& url)
{
    std::vector<std::string> dates;
    for (const fs::directory_entry& each : fs::directory_iterator(folder)) {
        const String name = each.path().filename().u16string();
        const String date = name.size() > dailyName.size() ? name.substr(dailyName.size(), 10) : String();
        if (name != dailyFile(date) || !momentIn(date + u" 00:00:00"))
            continue;
        try {
            if (!care::isOf(each.path(), url))
                throw RuntimeError(
                    failure::otherData,
                    u"«" + each.path().u16string() +
                        u"» es de otro centro: dé a cada uno una carpeta. No se ha hecho nada.");
            dates.push_back(toUtf8(date));
        } catch (const care::BadCopy& error) {
            printLine(error.description() + u" No cuenta como copia, y no se quita.");
        } catch (const RuntimeError&) {
            // Race: another run may have removed an old one meanwhile.
            if (fs::exists(each.path()))
                throw;
        }
    }
    return dates;
}

int daily(const Options& options, const String& place)
{
    const fs::path folder = pathIn(place);
    const String& url = options.values(u"--bd").front();
    if (!fs::is_directory(folder))
        throw RuntimeError(failure::otherData, u"«" + place + u"» no es una carpeta: hágala, o dé otra.");
    const String today = momentText(timeHere()).substr(0, 10);
    const fs::path file = folder / dailyFile(today);
    datesIn(folder, url);
    int result = done;
    bool isTaken = false;
    if (!fs::exists(file))
        try {
            result = take(options, file);
            isTaken = true;
        } catch (const RuntimeError&) {
            // Race: another run may have made it meanwhile.
            if (!fs::exists(file))
                throw;
        }
    if (!isTaken) {
        printLine(u"La copia de hoy ya está en " + file.u16string() + u".");
        result = check(options, file);
        if (result != done)
            printLine(u"Quítela y repita la orden, que hará otra.");
    }
    if (result != done)
        return result;
    const std::vector<std::string> dates = datesIn(folder, url);
    const std::vector<std::string> kept = care::keptOf(dates);
    for (const std::string& each : dates)
        if (std::ranges::find(kept, each) == kept.end()) {
            fs::remove(folder / dailyFile(fromUtf8(each)));
            printLine(u"Quitada la copia del " + fromUtf8(each) +
                      u": quedan las de 7 días, 4 semanas y 12 meses.");
        }
    return done;
}

} // namespace

int copia(Arguments arguments)
{
    const Options options(arguments, {{u"--bd", 1}, {u"--frase", 1}, {u"--diaria", 1}, {u"--comprobar"}}, 1);
    if (options.has(u"--diaria") && (options.has(u"--comprobar") || options.hasOperands()))
        throw UsageError(u"--diaria no va con --comprobar ni con un fichero: no van juntas.");
    if (options.has(u"--diaria"))
        return daily(options, options.values(u"--diaria").front());
    const fs::path file = pathIn(options.operand(0, u"el fichero de la copia"));
    if (!options.has(u"--comprobar"))
        return take(options, file);
    if (options.has(u"--bd"))
        throw UsageError(u"--comprobar va sin --bd: sólo mira la copia.");
    return check(options, file);
}

namespace {

/// The key of a copy, to be put in place once the school is; "" if it has none or it is here already. Fails
/// for another passphrase, and where there is another key.
std::string keyToPlace(const fs::path& file, const Options& options)
{
    if (!options.has(u"--frase"))
        return {};
    const std::optional<std::string> key = care::keyIn(file, passphraseIn(options));
    if (!key)
        throw RuntimeError(
            cipherFailed,
            u"La frase no es la de esta copia: no se ha restaurado nada. Repita la orden con la "
            u"buena, o sin --frase para dejar la clave como está.");
    const std::string here = keyFileText();
    if (key->empty())
        printLine(u"La copia no lleva la clave de las enfermedades: la frase no hace falta.");
    if (key->empty() || here == *key)
        return {};
    if (!here.empty())
        throw RuntimeError(
            cipherFailed,
            u"En " + keyPlace().u16string() +
                u" hay otra clave que la de la copia: no se ha "
                u"restaurado nada. Guárdela en otro sitio y repita la orden, o repítala sin --frase.");
    if (fs::exists(keyPlace()))
        readKey(keyPlace()); // Fails: it is no key, and leaves no place for one.
    return *key;
}

/// Puts the key in place, and says whether the illnesses are read with the one that is there.
void settleKey(const std::string& text, bool copyHasIt, const String& url)
{
    if (!text.empty()) {
        const std::size_t line = text.find('\n');
        const auto key = CipherKey::parse(text.substr(line + 1, text.find('\n', line + 1) - line - 1));
        if (!key)
            failCipher(u"El centro está restaurado, pero la clave que lleva la copia está estropeada: ponga "
                       u"la suya en " +
                       keyPlace().u16string() + u".");
        if (createKey(keyPlace(), *key))
            printLine(u"La clave de las enfermedades está en " + keyPlace().u16string() + u".");
    }
    try {
        printLine(checkKey(inspectSchool(url)) ? u"Las enfermedades se leen con la clave de este equipo."
                                               : u"No hay enfermedades que descifrar.");
    } catch (const RuntimeError& error) {
        if (error.number() != cipherFailed)
            throw;
        printLine(error.description() + (copyHasIt && text.empty()
                                             ? u" La copia lleva la suya: «zvconf copia --comprobar --frase» "
                                               u"dice si una frase la abre."
                                             : u""));
    }
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
    const Options options(arguments, {{u"--bd", 1}, {u"--frase", 1}}, 1);
    const fs::path file = pathIn(options.operand(0, u"el fichero de la copia"));
    const String& url = options.values(u"--bd").front();
    const care::CopyReport report = care::checkCopy(file);
    tellFaults(report);
    if (!report.faults.empty() && engineOf(url).exists(locationOf(url)))
        throw RuntimeError(
            failure::otherData,
            u"La copia es de unas bases de datos que no estaban como deben: no se pone en lugar "
            u"de un centro. Use otra, o restáurela donde no haya ninguno.");
    refuseWhileOpen(url);
    const std::string key = keyToPlace(file, options);
    const String kept = care::restoreCopy(file, url);
    printLine(statement(u"Restaurado en {} el centro de la copia: {} tablas, {} filas.",
                        {withoutPassword(url), report.tables, report.rows}));
    if (!kept.empty())
        printLine(u"El que había queda en " + withoutPassword(kept) +
                  u" (bórrelo cuando haya trabajado con el restaurado).");
    settleKey(key, report.hasKey, url);
    return report.faults.empty() ? done : found;
}

} // namespace zv::zvconf
