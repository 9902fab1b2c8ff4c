#include "zvconf/ComprobarDatos.h"

#include "care/rules/Rules.h"
#include "data/Schools.h"
#include "data/Statement.h"
#include "data/history/HistoryEngine.h"
#include "runtime/Convert.h"
#include "services/cZEncryptoAPI.h"
#include "zvconf/Historial.h"
#include "zvconf/JsonLines.h"

#include <algorithm>

namespace zv::zvconf {
namespace {

using care::Finding;

String deciphered(StringView text)
{
    String plain(text);
    cZEncryptoAPI::create().descifrar(plain);
    return plain;
}

void print(const Finding& each)
{
    printLine(statement(u"{}{}: {} {}{}", {each.advice ? u"Consejo, " : u"", Value(each.rule), each.text,
                                           each.remedy, each.repair ? u" (Lo hace --reparar.)" : u""}));
}

JsonObject jsonOf(const Finding& each, StringView kind)
{
    JsonObject result;
    result.text(u"clase", kind)
        .text(u"regla", each.rule)
        .text(u"texto", each.text)
        .text(u"remedio", each.remedy)
        .text(u"tabla", each.table)
        .number(u"fila", each.row)
        .number(u"seccion", each.section)
        .raw(u"reparable", each.repair ? u"true" : u"false");
    return result;
}

struct Repaired {
    std::vector<Finding> findings;
    Long opening = 0; ///< Its number in the history; 0 without one.
};

/// As an act of its own in the history, where it is on, so that it can be taken back.
Repaired repairAll(const String& url, const std::vector<Finding>& named)
{
    const School school = history::withHistory(openSchool(url), url);
    Repaired result;
    school.centro->dialogOpened(ourselves());
    try {
        result.findings = care::repair(school, named);
    } catch (...) {
        school.centro->dialogClosed();
        throw;
    }
    school.centro->dialogClosed();
    if (auto* history = history::historyOf(school.centro))
        if (const auto closed = history->takeClosed())
            result.opening = closed->parts.front().number;
    return result;
}

String notLookedAt(StringView rule)
{
    return u"No se ha podido mirar «" + String(rule) + u"»: a este centro le faltan tablas o columnas.";
}

void printEnd(const care::Survey& survey, std::size_t faults, const String& url, const Repaired* repaired)
{
    for (const StringView each : survey.skipped)
        printLine(notLookedAt(each));
    const auto advice = survey.findings.size() - faults;
    if (survey.findings.empty() && survey.skipped.empty())
        printLine(u"Ninguna ventana hará con estos datos nada que no se espere.");
    else
        printLine(
            statement(u"Fallos: {}. Consejos: {}.", {static_cast<Long>(faults), static_cast<Long>(advice)}));
    if (repaired == nullptr)
        return;
    printLine(statement(u"Reparados: {}.", {static_cast<Long>(repaired->findings.size())}));
    if (repaired->opening != 0)
        printLine(statement(u"Se vuelve atrás con: zvconf historial deshacer --apertura {} --si --bd {}",
                            {repaired->opening, withoutPassword(url)}));
}

} // namespace

int comprobarDatos(const String& url, Telling telling, bool repairs)
{
    const care::Survey survey = care::survey(inspectSchool(url), {.decipher = deciphered});
    const auto faults = static_cast<std::size_t>(
        std::ranges::count_if(survey.findings, [](const Finding& each) { return !each.advice; }));
    // Named first, whatever becomes of the repair.
    JsonLines lines;
    for (const Finding& each : survey.findings)
        if (telling == Telling::json)
            lines.add(jsonOf(each, each.advice ? u"consejo" : u"fallo"));
        else if (telling == Telling::each)
            print(each);
    const Repaired repaired = repairs ? repairAll(url, survey.findings) : Repaired();
    if (telling == Telling::json) {
        for (const Finding& each : repaired.findings)
            lines.add(jsonOf(each, u"reparado").number(u"apertura", repaired.opening));
        for (const StringView each : survey.skipped)
            lines.add(JsonObject()
                          .text(u"clase", u"no-mirada")
                          .text(u"regla", each)
                          .text(u"texto", notLookedAt(each)));
        lines.end();
    } else {
        printEnd(survey, faults, url, repairs ? &repaired : nullptr);
    }
    return faults > repaired.findings.size() ? found : done;
}

} // namespace zv::zvconf
