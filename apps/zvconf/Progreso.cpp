#include "data/Schools.h"
#include "data/Statement.h"
#include "progress/Panel.h"
#include "runtime/Convert.h"
#include "runtime/Csv.h"
#include "zvconf/Historial.h"
#include "zvconf/JsonLines.h"

#include <algorithm>
#include <iostream>

namespace zv::zvconf {
namespace {

using progress::Kind;
using progress::Panel;
using progress::Report;
using progress::Section;

Kind kindFrom(const String& word)
{
    for (const Kind kind : progress::kinds)
        if (wordOf(kind) == word)
            return kind;
    throw UsageError(u"«" + word + u"» no es un tipo de informe: consejo, eso o primaria.");
}

const Section& sectionOf(const Panel& panel, const Report& report)
{
    return *std::ranges::find(panel.sections, report.section, &Section::id);
}

bool isWanted(const Report& report, bool onlyMissing) { return !onlyMissing || !report.isWhole(); }

/// The kinds that the panel has, with what each of them calls missing.
std::vector<Kind> kindsIn(const Panel& panel)
{
    std::vector<Kind> result;
    for (const Kind kind : progress::kinds)
        if (std::ranges::find(panel.reports, kind, &Report::kind) != panel.reports.end())
            result.push_back(kind);
    return result;
}

void printHead(const Panel& panel, const Report& first)
{
    Long all = 0;
    Long lacking = 0;
    for (const Report& each : panel.reports)
        if (each.section == first.section && each.kind == first.kind) {
            ++all;
            lacking += each.isWhole() ? 0 : 1;
        }
    const Section& section = sectionOf(panel, first);
    printLine(statement(u"{} ({}), {}: {}", {section.name, section.course, Value(nameOf(first.kind)),
                                             lacking == 0 ? statement(u"completo de {}.", {all})
                                                          : statement(u"faltan {} de {}.", {lacking, all})}));
}

void printText(const Panel& panel, bool onlyMissing)
{
    const Report* before = nullptr;
    for (const Report& each : panel.reports) {
        if (before == nullptr || before->section != each.section || before->kind != each.kind)
            printHead(panel, each);
        before = &each;
        if (isWanted(each, onlyMissing))
            printLine(each.isWhole() ? statement(u"  {}: completo.", {each.name})
                                     : statement(u"  {}: {} de {}. {}.",
                                                 {each.name, each.given, each.expected,
                                                  (each.begun ? u"Falta: " : u"") + missingText(each)}));
        for (const progress::Stranger& stranger : each.strangers)
            printLine(u"  " + (isWanted(each, onlyMissing) ? u"  " : each.name + u": ") +
                      strangerText(stranger));
    }
    if (panel.reports.empty())
        printLine(u"Ninguna sección de las que se piden tiene alumnos con esos informes.");
    for (const Kind kind : kindsIn(panel))
        printLine(definition(kind));
    printLine(progress::definitionOfAll());
}

String arrayOf(const std::vector<String>& elements)
{
    String result;
    for (const String& each : elements)
        result += (result.empty() ? u"" : u",") + each;
    return u"[" + result + u"]";
}

JsonObject jsonOf(const Panel& panel, const Report& report)
{
    std::vector<String> missing;
    std::vector<String> strangers;
    for (const String& each : report.missing)
        missing.push_back(jsonText(each));
    for (const progress::Stranger& each : report.strangers)
        strangers.push_back(JsonObject()
                                .text(u"parte", each.part)
                                .text(u"dice", each.said)
                                .number(u"alumno", each.pupil)
                                .text(u"nombre", each.name)
                                .str());
    const Section& section = sectionOf(panel, report);
    JsonObject result;
    result.text(u"clase", u"informe")
        .text(u"tipo", wordOf(report.kind))
        .number(u"seccion", section.id)
        .text(u"nombreSeccion", section.name)
        .text(u"curso", section.course)
        .number(u"alumno", report.pupil)
        .text(u"nombre", report.name)
        .number(u"escrito", report.given)
        .number(u"esperado", report.expected)
        .raw(u"empezado", report.begun ? u"true" : u"false")
        .raw(u"falta", arrayOf(missing))
        .raw(u"nombresAjenos", arrayOf(strangers));
    return result;
}

void printJson(const Panel& panel, bool onlyMissing)
{
    JsonLines lines;
    for (const Kind kind : kindsIn(panel))
        lines.add(JsonObject()
                      .text(u"clase", u"definicion")
                      .text(u"tipo", wordOf(kind))
                      .text(u"texto", definition(kind)));
    lines.add(JsonObject()
                  .text(u"clase", u"definicion")
                  .text(u"tipo", u"todos")
                  .text(u"texto", progress::definitionOfAll()));
    for (const Report& each : panel.reports)
        if (isWanted(each, onlyMissing))
            lines.add(jsonOf(panel, each));
    lines.end();
}

/// As the host exports its lists: a mark in front, semicolons, lines that end as a spreadsheet wants it.
void printCsv(const Panel& panel, bool onlyMissing)
{
    String text = u"\uFEFFInforme;Curso;Sección;Alumno;Escrito;Esperado;Falta;Otro nombre\r\n";
    for (const Report& each : panel.reports) {
        if (!isWanted(each, onlyMissing))
            continue;
        String strangers;
        for (const progress::Stranger& stranger : each.strangers)
            strangers += (strangers.empty() ? u"" : u" ") + strangerText(stranger);
        const Section& section = sectionOf(panel, each);
        String line;
        for (const String& cell :
             {String(nameOf(each.kind)), section.course, section.name, each.name, decimalText(each.given),
              decimalText(each.expected), missingText(each), strangers})
            line += (line.empty() ? u"" : u";") + csvCell(cell);
        text += line + u"\r\n";
    }
    std::cout << toUtf8(text);
}

} // namespace

int progreso(Arguments arguments)
{
    const Options options(
        arguments, {{u"--bd", 1}, {u"--seccion", 1}, {u"--tipo", 1}, {u"--faltan"}, {u"--json"}, {u"--csv"}});
    if (options.has(u"--json") && options.has(u"--csv"))
        throw UsageError(u"--json y --csv no van juntas.");
    progress::Look look;
    if (options.has(u"--tipo"))
        look.kind = kindFrom(options.values(u"--tipo").front());
    if (options.has(u"--seccion"))
        look.section = numberFrom(options.values(u"--seccion").front());
    const Panel panel = progress::panel(*inspectSchool(options.values(u"--bd").front()).centro, look);
    if (look.section != 0 && panel.sections.empty())
        throw RuntimeError(
            failure::otherData,
            statement(u"La sección {} no está, o no tiene esos informes. Los números de las que "
                      u"los tienen los da «zvconf progreso --json», en «seccion».",
                      {look.section}));
    const bool onlyMissing = options.has(u"--faltan");
    if (options.has(u"--json"))
        printJson(panel, onlyMissing);
    else if (options.has(u"--csv"))
        printCsv(panel, onlyMissing);
    else
        printText(panel, onlyMissing);
    return std::ranges::all_of(panel.reports, &Report::isWhole) ? done : found;
}

} // namespace zv::zvconf
