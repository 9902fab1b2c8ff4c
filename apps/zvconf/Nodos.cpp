#include "zvconf/Command.h"

#include "runtime/Convert.h"
#include "session/NodeTable.h"

namespace zv::zvconf {

int nodos(Arguments arguments)
{
    const Options none(arguments, {});
    const auto answer = [](bool yes) { return yes ? u"sí" : u"no"; };
    for (const ModuleNode& node : moduleNodes()) {
        String line = decimalText(node.number) + u"\t" + String(node.title) + u"\t" + String(node.dialog) +
                      u"\t" + answer(node.opens) + u"\t" + answer(node.guards);
        if (!node.table.empty())
            line += u"\t" + String(node.table) + u"." + String(node.key());
        printLine(line);
    }
    return done;
}

} // namespace zv::zvconf
