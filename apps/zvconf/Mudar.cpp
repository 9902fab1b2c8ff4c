#include "zvconf/Command.h"

#include "care/copies/Move.h"
#include "data/Statement.h"

namespace zv::zvconf {

int mudar(Arguments arguments)
{
    const Options options(arguments, {{u"--de", 1}, {u"--a", 1}});
    const String& from = options.values(u"--de").front();
    const String& to = options.values(u"--a").front();
    const care::Moved moved = care::moveSchool(from, to);
    printLine(statement(
        u"El centro de {} está también en {}, y se ha comprobado que es igual: {} tablas, {} filas.",
        {withoutPassword(from), withoutPassword(to), moved.tables, moved.rows}));
    printLine(u"Desde ahora use el segundo, y guarde el primero hasta que se haya trabajado con él.");
    return done;
}

} // namespace zv::zvconf
