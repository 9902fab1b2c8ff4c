#include "care/joins/Join.h"
#include "data/Schools.h"
#include "data/Statement.h"
#include "data/history/HistoryEngine.h"
#include "data/history/Words.h"
#include "runtime/Convert.h"
#include "services/cZEncryptoAPI.h"
#include "zvconf/Historial.h"

namespace zv::zvconf {
namespace {

using care::Joiner;
using care::Pair;

/// What belongs to one way of the command, or two.
constexpr struct {
    StringView option;
    StringView goesWith;
    StringView orWith;
} companions[] = {{u"--queda", u"--sobra", u"--sobra"},
                  {u"--ensayo", u"--sobra", u"--sobra"},
                  {u"--nodo", u"--sobra", u"--parecidas"}};

const ModuleNode& nodeIn(const String& text)
{
    const std::optional<int> number = numberIn(text);
    const ModuleNode* const node = number && *number < 256 ? moduleNode(static_cast<Byte>(*number)) : nullptr;
    if (node == nullptr || node->table.empty())
        throw UsageError(u"«" + text + u"» no es el número de una lista: «zvconf nodos» los dice.");
    return *node;
}

String deciphered(const Value& text)
{
    String plain = String() + text;
    cZEncryptoAPI::create().descifrar(plain);
    return plain;
}

String listed(const std::vector<String>& names)
{
    String result;
    for (const String& each : names)
        result += (result.empty() ? u"" : u", ") + each;
    return result;
}

void tell(const care::JoinPlan& plan, const Pair& pair)
{
    if (plan.stays.empty() || plan.goes.empty())
        return;
    printLine(statement(u"«{}»: queda {} «{}», sobra {} «{}».",
                        {pair.node->title, pair.stays, plan.stays, pair.goes, plan.goes}));
    for (const care::Referrer& each : plan.moves)
        printLine(statement(u"  {}: {} ({}{}).", {each.table, each.count, listed(each.examples),
                                                  each.count > std::ssize(each.examples) ? u"…" : u""}));
    if (plan.moves.empty())
        printLine(u"  No se refiere nada a la que sobra.");
    if (plan.merged != 0)
        printLine(statement(u"  De las parejas que quedarían repetidas se quitan {}.", {plan.merged}));
    if (!plan.lost.empty())
        printLine(u"  La que sobra decía: " + history::shown(pair.node->table, plan.lost) + u".");
    for (const String& each : plan.warnings)
        printLine(u"  Atención: " + each);
}

int joinRows(const Joiner& joiner, const Pair& pair, bool rehearses)
{
    const care::JoinPlan plan = care::planOf(joiner, pair);
    tell(plan, pair);
    for (const String& each : plan.obstacles)
        printLine(each);
    if (rehearses || !plan.obstacles.empty()) {
        printLine(plan.obstacles.empty() ? u"No se ha cambiado nada: se hace sin --ensayo."
                                         : u"No se pueden unir: no se ha cambiado nada.");
        return plan.obstacles.empty() ? done : found;
    }
    const Long number = care::join(joiner, pair);
    printLine(statement(u"Unidas. Se deshace con «zvconf unir --deshacer {} --bd {}».",
                        {number, withoutPassword(joiner.url)}));
    return done;
}

int undo(const Joiner& joiner, const String& text)
{
    const Long left = care::undoJoin(joiner, numberFrom(text));
    printLine(left == 0   ? String(u"Deshecha: todo está como estaba.")
              : left == 1 ? String(u"Deshecha, menos 1 fila que alguien ha cambiado después.")
                          : statement(u"Deshecha, menos {} filas que alguien ha cambiado después.", {left}));
    return left == 0 ? done : found;
}

int list(const Joiner& joiner)
{
    const std::vector<care::Joined> all = care::joins(joiner);
    for (const care::Joined& each : all)
        printLine(statement(u"{}\t{}\t{}\t«{}» ({}) se unió a {}\t{}",
                            {each.number, history::whenTold(each.moment, timeHere()), each.pair.node->title,
                             each.goes, each.pair.goes, each.pair.stays, each.by}));
    if (all.empty())
        printLine(u"No hay ninguna unión que se pueda deshacer.");
    return done;
}

int listAlike(const School& school, const Options& options, StringView url)
{
    Long count = 0;
    for (const ModuleNode& each : moduleNodes()) {
        if (each.table.empty() ||
            (options.has(u"--nodo") && &each != &nodeIn(options.values(u"--nodo").front())))
            continue;
        for (const care::Alike& alike : care::lookAlikes(*school.centro, each, deciphered)) {
            ++count;
            printLine(statement(u"{}: «{}» ({}) y «{}» ({}). Se unen con «zvconf unir --nodo {} --queda {} "
                                u"--sobra {} --bd {}».",
                                {each.title, alike.stays, alike.pair.stays, alike.goes, alike.pair.goes,
                                 each.number, alike.pair.stays, alike.pair.goes, withoutPassword(url)}));
        }
    }
    if (count == 0)
        printLine(u"No hay filas que parezcan la misma.");
    return count == 0 ? done : found;
}

} // namespace

int unir(Arguments arguments)
{
    const Options options(arguments, {{u"--bd", 1},
                                      {u"--nodo", 1},
                                      {u"--queda", 1},
                                      {u"--sobra", 1},
                                      {u"--ensayo"},
                                      {u"--parecidas"},
                                      {u"--hechas"},
                                      {u"--deshacer", 1}});
    int ways = 0;
    for (const StringView each : {u"--sobra", u"--parecidas", u"--hechas", u"--deshacer"})
        ways += options.has(each) ? 1 : 0;
    if (ways != 1)
        throw UsageError(u"unir quiere una de --sobra, --parecidas, --hechas y --deshacer.");
    for (const auto& [option, goesWith, orWith] : companions)
        if (options.has(option) && !options.has(goesWith) && !options.has(orWith))
            throw UsageError(String(option) + u" no se usa con --hechas ni --deshacer" +
                             (orWith == goesWith ? u" ni --parecidas." : u"."));
    const String& url = options.values(u"--bd").front();
    if (options.has(u"--parecidas"))
        return listAlike(inspectSchool(url), options, url);
    if (options.has(u"--sobra")) {
        const Pair pair{.node = &nodeIn(options.values(u"--nodo").front()),
                        .stays = numberFrom(options.values(u"--queda").front()),
                        .goes = numberFrom(options.values(u"--sobra").front())};
        School school = history::withHistory(openSchool(url), url);
        return joinRows({school, url, ourselves()}, pair, options.has(u"--ensayo"));
    }
    School school = history::withHistory(openSchool(url), url);
    const Joiner joiner{school, url, ourselves()};
    return options.has(u"--hechas") ? list(joiner) : undo(joiner, options.values(u"--deshacer").front());
}

} // namespace zv::zvconf
