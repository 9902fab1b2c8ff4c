#include "zvconf/Historial.h"

#include "data/Schools.h"
#include "data/history/Log.h"

#include <algorithm>

namespace zv::zvconf {
namespace {

constexpr Command subcommands[] = {
    {u"activar", activarHistorial},
    {u"desactivar", desactivarHistorial},
};

String subcommandNames()
{
    String names;
    for (const Command& each : subcommands)
        names += (names.empty() ? u"" : u", ") + String(each.name);
    return names;
}

} // namespace

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
    printLine(u"El historial está desactivado: no se anota nada más, y lo anotado sigue ahí.");
    return done;
}

} // namespace zv::zvconf
