#include "care/copies/Move.h"

#include "data/DataError.h"
#include "data/Schools.h"

namespace zv::care {
namespace {

[[noreturn]] void failFor(const std::vector<String>& lines, StringView advice)
{
    String words;
    for (const String& each : lines)
        words += each + u"\n";
    throw RuntimeError(failure::otherData, words + String(advice));
}

} // namespace

Moved copySchool(const School& school, Engine& source, StringView to,
                 const std::function<void(StringView table, Long rows)>& tell, StringView kept)
{
    if (const std::vector<String> foreign = foreignParts(school, source); !foreign.empty())
        failFor(foreign,
                u"No se ha copiado nada: se perderían. Quítelas de ahí, o cópielas con las herramientas del "
                u"servidor.");
    Moved moved;
    const auto fill = [&](School& made) {
        Engine& target = engineOf(to);
        copyContents(school, source, made, target, [&](StringView table, Long rows) {
            ++moved.tables;
            moved.rows += rows;
            tell(table, rows);
        });
        moved.contents = contentsOf(made, target);
        const std::vector<String> different = differences(contentsOf(school, source), moved.contents);
        if (!different.empty())
            failFor(different,
                    u"No se ha copiado nada: lo copiado no es igual. El centro de partida está como estaba.");
    };
    createSchool(to, fill, kept);
    return moved;
}

Moved moveSchool(StringView from, StringView to, const std::function<void(StringView table, Long rows)>& tell)
{
    Engine& source = engineOf(from);
    return copySchool(source.snapshot(locationOf(from)), source, to, tell);
}

} // namespace zv::care
