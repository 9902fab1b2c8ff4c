#include "zvconf/Historial.h"

#include "care/joins/JoinRecord.h"
#include "data/Schools.h"
#include "data/Statement.h"
#include "data/history/Erasure.h"
#include "data/history/Export.h"
#include "data/history/Verify.h"
#include "runtime/PrivateFile.h"

#include <fstream>

namespace zv::zvconf {
namespace {

constexpr Option database{u"--bd", 1};
constexpr Option really{u"--si"};

Long number(StringView digits, StringView what)
{
    const auto result = numberIn(digits);
    if (!result)
        throw UsageError(u"«" + String(digits) + u"» no es " + String(what) + u".");
    return *result;
}

String headText(const history::Head& head)
{
    return head.number == 0 ? u"Cabeza: ninguna, no hay asientos."
                            : statement(u"Cabeza: {}:{}", {head.number, head.link});
}

history::Head headIn(const String& text)
{
    const std::size_t colon = text.find(u':');
    const auto number = numberIn(StringView(text).substr(0, colon));
    if (!number || colon == String::npos)
        throw UsageError(u"«" + text + u"» no es una cabeza, NÚMERO:ENLACE.");
    return {*number, text.substr(colon + 1)};
}

/// What is erased must not stay in the files either.
void scrub(const School& school, StringView url)
{
    if (!engineOf(url).scrub(*school.centro) || !engineOf(url).scrub(*school.borrado))
        printLine(u"Alguien tiene abiertas las bases de datos: lo olvidado ya no se ve, pero queda en los "
                  u"ficheros. Repita la orden cuando nadie las use.");
}

const schema::Table& tableNamed(StringView name)
{
    const schema::Table* table = schema::table(name);
    if (table == nullptr)
        throw UsageError(u"«" + String(name) + u"» no es una tabla del centro.");
    return *table;
}

/// Says how many texts there are to erase, or, with `--si`, erases them; and so with the rows that the
/// records of joins keep.
int eraseOrSay(const Options& options, const School& school, Long there, const std::function<Long()>& erase,
               const std::function<Long(bool forgets)>& kept)
{
    if (!options.has(really.name)) {
        printLine(statement(u"Asientos con textos que se olvidarían: {}. Con --si se olvidan, para siempre.",
                            {there}));
        if (const Long rows = kept(false); rows != 0)
            printLine(statement(u"Filas que se guardan para deshacer uniones y se olvidarían: {}.", {rows}));
        return done;
    }
    printLine(statement(u"Asientos olvidados: {}.", {erase()}));
    if (const Long rows = kept(true); rows != 0)
        printLine(
            statement(u"Filas olvidadas de las que se guardan para deshacer uniones: {}. Al deshacerlas no "
                      u"vuelven.",
                      {rows}));
    scrub(school, options.values(database.name).front());
    printLine(headText(history::headOf(*school.centro)));
    return done;
}

} // namespace

int comprobarHistorial(Arguments arguments)
{
    const Options options(arguments, {database, {u"--cabeza", 1}});
    std::optional<history::Head> noted;
    if (options.has(u"--cabeza"))
        noted = headIn(options.values(u"--cabeza").front());
    const School school = inspectSchool(options.values(database.name).front());
    const history::Verification result =
        withHistory(*school.centro, [&] { return history::verify(*school.centro, noted); });
    for (const history::Finding& each : result.findings)
        printLine((each.number == 0 ? u"La cabeza " : statement(u"Asiento {}: ", {each.number})) +
                  each.words);
    printLine(statement(u"Asientos: {}.", {result.entries}));
    printLine(headText(result.head));
    if (result.defects == 0)
        printLine(u"El historial está como se escribió.");
    else
        printLine(
            statement(u"Defectos: {}. Guarde una copia de las bases de datos tal como están, y compárela "
                      u"con las anteriores.",
                      {result.defects}));
    return result.defects == 0 ? done : found;
}

int olvidarHistorial(Arguments arguments)
{
    const Options options(arguments, {database, really, {u"--alumno", 1}, {u"--fila", 2}});
    if (options.has(u"--alumno") == options.has(u"--fila"))
        throw UsageError(u"olvidar quiere --alumno N o --fila TABLA N.");
    const bool pupil = options.has(u"--alumno");
    const schema::Table& table = tableNamed(pupil ? u"Alumno" : options.values(u"--fila").front());
    const Long key = number(options.values(pupil ? u"--alumno" : u"--fila").back(), u"el número de una fila");
    const School school = openSchool(options.values(database.name).front());
    return withHistory(*school.centro, [&] {
        const auto there = static_cast<Long>(history::entriesAbout(*school.centro, table, key).size());
        return eraseOrSay(
            options, school, there, [&] { return history::eraseAbout(*school.centro, table, key); },
            [&](bool forgets) { return care::keptAbout(*school.borrado, table, key, forgets); });
    });
}

int plazoHistorial(Arguments arguments)
{
    const Options options(arguments, {database, really}, 1);
    std::optional<Long> months;
    if (options.hasOperands())
        months = number(options.operand(0, u"el número de meses"), u"un número de meses");
    const School school = openSchool(options.values(database.name).front());
    Connection& centro = *school.centro;
    return withHistory(*school.centro, [&] {
        if (months && options.has(really.name))
            history::keepMonths(centro, *months);
        const Long kept = months.value_or(history::monthsKept(centro));
        if (kept == 0) {
            printLine(u"Plazo: ninguno, los textos se guardan siempre.");
            return int{done};
        }
        printLine(statement(u"Plazo: {} meses.", {kept}));
        const Seconds limit = history::monthsBefore(timeHere(), kept);
        return eraseOrSay(
            options, school, history::countOlder(centro, limit),
            [&] { return history::eraseOlder(centro, limit); },
            [&](bool forgets) { return care::keptBefore(*school.borrado, momentText(limit), forgets); });
    });
}

int exportarHistorial(Arguments arguments)
{
    const Options options(arguments, {database, {u"--sin-nombres"}}, 1);
    const String& file = options.operand(0, u"el fichero que se escribe");
    const School school = inspectSchool(options.values(database.name).front());
    const std::string name = toUtf8(file);
    const std::filesystem::path path = std::u8string(name.begin(), name.end());
    // Its owner's alone before a word is in it.
    if (!createPrivateFile(path, ""))
        throw std::runtime_error("«" + name + "» existe ya: quítelo, o ponga otro nombre.");
    Long count = 0;
    history::Head head;
    try {
        std::ofstream out(path, std::ios::binary | std::ios::app);
        out.exceptions(std::ios::failbit | std::ios::badbit);
        head = withHistory(*school.centro, [&] {
            return history::exportAll(*school.centro,
                                      options.has(u"--sin-nombres") ? history::Names::hidden
                                                                    : history::Names::shown,
                                      [&](const std::string& line) {
                                          out << line << '\n';
                                          ++count;
                                      });
        });
        out.close();
    } catch (const std::ios::failure&) {
        std::filesystem::remove(path);
        throw std::runtime_error("«" + name + "» no se puede escribir: mire si queda sitio en el disco.");
    } catch (...) {
        std::filesystem::remove(path);
        throw;
    }
    printLine(statement(u"Asientos: {}.", {count}));
    printLine(headText(head));
    return done;
}

} // namespace zv::zvconf
