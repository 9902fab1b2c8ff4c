#include "zvconf/CentrosInforme.h"

#include "data/Engine.h"
#include "data/Statement.h"
#include "runtime/Convert.h"
#include "runtime/Csv.h"
#include "runtime/Json.h"
#include "zvconf/Command.h"

#include <algorithm>
#include <array>

namespace zv::zvconf {
namespace {

using Result = Outcome::Result;

struct ResultText {
    Result result;
    StringView name;
    StringView remedy; ///< {}: the command for that school alone.
};

constexpr std::array<ResultText, 5> results{{
    {Result::well, u"bien", u""},
    {Result::faulty, u"con defectos", u"Corríjalo; «zvconf {}» lo dice entero."},
    {Result::failed, u"no se ha podido", u"Corríjalo y repita la orden, o «zvconf {}»."},
    {Result::died, u"se ha cortado", u"Repita «zvconf {}»; si vuelve a cortarse, avise con lo que escriba."},
    {Result::notDone, u"sin hacer", u"Repita la orden."},
}};

const ResultText& of(Result result) { return *std::ranges::find(results, result, &ResultText::result); }

/// Tenths, with the point or comma that is wanted.
String seconds(const Outcome& outcome, StringView mark)
{
    const auto tenths = Long{static_cast<Long>((outcome.took.count() + 50) / 100)};
    return decimalText(tenths / 10) + String(mark) + decimalText(tenths % 10);
}

String remedyFor(const Round& round, std::size_t place)
{
    const StringView remedy = of(round.outcomes[place].result).remedy;
    if (remedy.find(u"{}") == StringView::npos)
        return String(remedy);
    return statement(remedy, {round.again + u" --solo " + round.schools[place].name});
}

String indented(const String& text) { return u"  " + Replace(text, u"\n", u"\n  "); }

} // namespace

String lineOf(const ListedSchool& school, const Outcome& outcome)
{
    String line =
        school.name + u": " + String(of(outcome.result).name) + u" (" + seconds(outcome, u",") + u" s)";
    if (outcome.result != Result::well)
        line += u"\n" + indented(outcome.text);
    return line;
}

String countsOf(std::span<const Outcome> outcomes)
{
    String line;
    for (const ResultText& each : results)
        if (const auto count = std::ranges::count(outcomes, each.result, &Outcome::result); count > 0)
            line += (line.empty() ? u"" : u", ") + String(each.name) + u" " + decimalText(count);
    return line;
}

void printReport(const Round& round)
{
    bool isFirst = true;
    for (std::size_t place = 0; place < round.schools.size(); ++place) {
        const Outcome& outcome = round.outcomes[place];
        if (outcome.result == Result::well || outcome.result == Result::notDone)
            continue;
        if (isFirst)
            printLine(u"\nLo que no está bien:");
        isFirst = false;
        printLine(lineOf(round.schools[place], outcome));
        printLine(indented(remedyFor(round, place)));
    }
    printLine(statement(u"\nCentros: {}. De ellos, {}.",
                        {static_cast<Long>(round.schools.size()), countsOf(round.outcomes)}));
    if (const auto keyless = std::ranges::count_if(
            round.outcomes,
            [](const Outcome& each) { return each.withoutKey && each.result == Result::well; });
        keyless > 0)
        printLine(statement(u"Copias sin la clave de las enfermedades: {}. No están enteras sin ella: dé una "
                            u"frase con --frase, o guarde aparte la clave de cada centro.",
                            {static_cast<Long>(keyless)}));
    if (std::ranges::find(round.outcomes, Result::notDone, &Outcome::result) != round.outcomes.end())
        printLine(u"Faltan centros: repita la orden. Lo que ya está hecho se queda como está.");
}

String csvOf(const Round& round)
{
    String text = u"\uFEFFCentro;URL;Orden;Resultado;Segundos;Dice;Qué hacer\r\n";
    for (std::size_t place = 0; place < round.schools.size(); ++place) {
        const ListedSchool& school = round.schools[place];
        const Outcome& outcome = round.outcomes[place];
        String line;
        for (const String& cell :
             {school.name, withoutPassword(school.url), String(round.command),
              String(of(outcome.result).name), seconds(outcome, u","), outcome.text, remedyFor(round, place)})
            line += (line.empty() ? u"" : u";") + csvCell(cell);
        text += line + u"\r\n";
    }
    return text;
}

String jsonOf(const Round& round)
{
    String text;
    for (std::size_t place = 0; place < round.schools.size(); ++place) {
        const ListedSchool& school = round.schools[place];
        const Outcome& outcome = round.outcomes[place];
        text += (text.empty() ? u"[" : u",") +
                JsonObject()
                    .text(u"centro", school.name)
                    .text(u"url", withoutPassword(school.url))
                    .text(u"orden", round.command)
                    .text(u"resultado", of(outcome.result).name)
                    .raw(u"segundos", seconds(outcome, u"."))
                    .text(u"dice", outcome.text)
                    .text(u"remedio", remedyFor(round, place))
                    .str() +
                u"\n";
    }
    return text + u"]\n";
}

} // namespace zv::zvconf
