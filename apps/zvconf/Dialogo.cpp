#include "zvconf/Command.h"

#include "data/Schools.h"
#include "data/Statement.h"
#include "data/history/HistoryEngine.h"
#include "module/Module.h"
#include "runtime/Convert.h"
#include "session/HostSession.h"
#include "session/NodeTable.h"
#include "session/cAsignarDatos.h"
#include "session/cConstCol.h"
#include "zvconf/System.h"

#include <algorithm>
#include <stdexcept>

namespace zv::zvconf {

namespace {

const ModuleNode& nodeNamed(const String& word)
{
    const auto nodes = moduleNodes();
    const auto found = std::ranges::find_if(nodes, [&](const ModuleNode& node) {
        return node.opens && (word == decimalText(node.number) || sameName(word, node.dialog));
    });
    if (found == nodes.end())
        throw UsageError(u"«" + word + u"» no es un nodo que se abra: los dice «zvconf nodos».");
    return *found;
}

Long rowNumber(const String& word)
{
    // Without a sign or a mark, which a conversion would round.
    const bool digits = !word.empty() && word.find_first_not_of(u"0123456789") == String::npos;
    try {
        if (const Long row = digits ? CLng(word) : 0; row > 0)
            return row;
    } catch (const RuntimeError&) {
        // Too large for a key.
    }
    throw UsageError(u"«" + word + u"» no es el número de una fila: es un número entero desde 1.");
}

/// A dialog opened on a row that is not there would show nothing, and save nothing.
void needRow(const School& school, const ModuleNode& node, Long row)
{
    const String key(node.key());
    if (node.table.empty() ||
        !school.centro
             ->Execute(statement(
                 u"SELECT " + key + u" FROM " + String(node.table) + u" WHERE " + key + u"={}", {row}))
             ->Eof())
        return;
    throw std::runtime_error(toUtf8(u"En «" + String(node.title) + u"» no hay ninguna fila " +
                                    decimalText(row) +
                                    u": compruebe el número, o quite --fila para una nueva."));
}

} // namespace

int dialogo(Arguments arguments)
{
    const Options options(arguments, {{u"--bd", 1}, {u"--fila", 1}}, 1);
    const ModuleNode& node = nodeNamed(options.operand(0, u"el nodo"));
    const Long row = options.has(u"--fila") ? rowNumber(options.values(u"--fila").front()) : 0;
    const auto screen = windowDesktop();
    const String& url = options.values(u"--bd").front();
    const School school = history::withHistory(openSchool(url), url);
    if (row > 0)
        needRow(school, node, row);
    installModule();
    const auto session = newHostSession(school);
    let(*session, u"Accion", row > 0 ? cConstCol::Modificado : cConstCol::NUEVO);
    let(*session, u"lngRowData", row);
    cAsignarDatos facade;
    facade.ObtenerDatos(session);
    const UsingDesktop shown(*screen);
    facade.ActivarFormulario(node.number);
    return done;
}

} // namespace zv::zvconf
