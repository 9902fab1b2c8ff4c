#include "zvconf/Historial.h"

#include "data/Schema.h"
#include "data/Schools.h"
#include "data/history/HistoryEngine.h"
#include "data/history/Log.h"
#include "runtime/Convert.h"

#include <algorithm>

namespace zv::zvconf {
namespace {

constexpr Command subcommands[] = {
    {u"activar", activarHistorial}, {u"desactivar", desactivarHistorial}, {u"comprobar", comprobarHistorial},
    {u"olvidar", olvidarHistorial}, {u"plazo", plazoHistorial},           {u"exportar", exportarHistorial},
    {u"ver", verHistorial},         {u"deshacer", deshacerHistorial},     {u"cortados", cortadosHistorial},
};

String subcommandNames()
{
    String names;
    for (const Command& each : subcommands)
        names += (names.empty() ? u"" : u", ") + String(each.name);
    return names;
}

} // namespace

Long numberFrom(const String& text)
{
    const auto number = numberIn(text);
    if (!number || *number < 1)
        throw UsageError(u"«" + text + u"» no es un número desde 1.");
    return *number;
}

String rowOf(String& table, const String& number)
{
    const schema::Table* const known = schema::table(table);
    if (known == nullptr)
        throw UsageError(u"«" + table + u"» no es una tabla del centro.");
    table = String(known->name);
    return String(known->columns().front().name) + u"=" + decimalText(numberFrom(number));
}

Seconds momentFrom(const String& text)
{
    constexpr std::size_t ofADay = StringView(u"2024-09-12").size();
    const auto moment = localMomentIn(text + (text.size() == ofADay ? u" 00:00:00" : u":00"));
    if (!moment)
        throw UsageError(u"«" + text + u"» no es un día (AAAA-MM-DD) ni un momento (\"AAAA-MM-DD HH:MM\").");
    return *moment;
}

std::shared_ptr<history::HistoryConnection> openHistory(StringView url)
{
    auto result = std::dynamic_pointer_cast<history::HistoryConnection>(
        history::withHistory(openSchool(url), url).centro);
    if (!result)
        throw std::runtime_error("El historial no está activado: así no se podría volver atrás. Actívelo con "
                                 "«zvconf historial activar».");
    return result;
}

int historial(Arguments arguments)
{
    const auto named = arguments.empty()
                           ? std::end(subcommands)
                           : std::ranges::find(subcommands, StringView(arguments.front()), &Command::name);
    if (named == std::end(subcommands))
        throw UsageError(u"historial quiere una de estas palabras detrás: " + subcommandNames() + u".");
    return named->run(arguments.subspan(1));
}

int activarHistorial(Arguments arguments)
{
    const Options options(arguments, {{u"--bd", 1}});
    history::activate(*openSchool(options.values(u"--bd").front()).centro);
    printLine(
        u"El historial está activado: se guarda lo que cambian los programas que se abran desde ahora.");
    return done;
}

int desactivarHistorial(Arguments arguments)
{
    const Options options(arguments, {{u"--bd", 1}});
    history::deactivate(*openSchool(options.values(u"--bd").front()).centro);
    printLine(
        u"El historial está desactivado para los programas que se abran desde ahora; lo anotado sigue ahí.");
    return done;
}

} // namespace zv::zvconf
