#include "paper/Sheet.h"

#include "data/Cells.h"
#include "data/DataError.h"
#include "data/Statement.h"
#include "progress/Panel.h"
#include "runtime/Convert.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <span>

namespace zv::paper {
namespace {

using progress::Answer;
using progress::Pupil;
using progress::Reading;
using Rows = std::vector<std::vector<Value>>;

Rows read(Connection& centro, const String& query)
{
    Rows rows;
    for (const RecordsetPtr found = centro.Execute(query); !found->Eof(); found->MoveNext())
        rows.push_back(found->row());
    return rows;
}

/// Text of the suite's own tables, which a school made elsewhere may lack.
String readText(Connection& centro, const String& query)
{
    try {
        const Rows rows = read(centro, query);
        return rows.empty() ? String() : textIn(rows.front().front());
    } catch (const RuntimeError& error) {
        if (!isLacking(error))
            throw;
        return {};
    }
}

void readHeading(Connection& centro, Long id, SectionSheets& section)
{
    const Rows rows = read(
        centro,
        statement(u"SELECT Seccion.Descripcion, Curso.Descripcion, TipoEnsenanza.Nombre FROM (Seccion LEFT "
                  u"JOIN Curso ON Seccion.CodCurso=Curso.IDCurso) LEFT JOIN TipoEnsenanza ON "
                  u"Curso.codTipoEnsenanza=TipoEnsenanza.IDTipoEnsenanza WHERE Seccion.IDSeccion={}",
                  {id}));
    if (rows.empty())
        throw RuntimeError(failure::otherData,
                           u"No hay ninguna sección con el número " + decimalText(id) + u".");
    section.section = textIn(rows.front()[0]);
    section.course = textIn(rows.front()[1]);
    section.teaching = textIn(rows.front()[2]);
    section.id = id;
    const Rows all = read(centro, u"SELECT Seccion.Descripcion, Curso.Descripcion FROM Seccion LEFT JOIN "
                                  u"Curso ON Seccion.CodCurso=Curso.IDCurso");
    section.hasNamesake =
        std::ranges::count_if(all, [&](const std::vector<Value>& each) {
            return sameName(textIn(each[0]), section.section) && sameName(textIn(each[1]), section.course);
        }) > 1;
    section.school = readText(centro, u"SELECT Nombre FROM Centro ORDER BY IDCentro");
    const String tutor = u" FROM Personal INNER JOIN Seccion ON Personal.IDPersonal=Seccion.CodTutor WHERE "
                         u"Seccion.IDSeccion=" +
                         decimalText(id);
    for (const StringView part : {u"Nombre", u"Apellido_1", u"Apellido_2"}) {
        const String text = readText(centro, u"SELECT Personal." + String(part) + tutor);
        section.tutor += (section.tutor.empty() || text.empty() ? u"" : u" ") + text;
    }
}

String written(const String& text) { return isBlank(text) ? String() : text; }

/// The questions with what may be answered to each, in the order of the answers' keys.
std::vector<Question> questionsOf(std::span<const String> names, const std::map<Long, Answer>& answers)
{
    std::vector<Question> result;
    for (const String& name : names)
        result.push_back({name});
    for (const auto& [key, answer] : answers)
        if (!answer.text.empty() && answer.question >= 1 &&
            answer.question <= static_cast<Long>(result.size()))
            result[static_cast<std::size_t>(answer.question - 1)].answers.push_back(answer.text);
    return result;
}

String textOf(const std::map<Long, Answer>& answers, Long key)
{
    const auto found = answers.find(key);
    return found == answers.end() ? String() : found->second.text;
}

/// The texts go into the sheet in the order of the parts' table.
void fillTexts(const Pupil& pupil, Sheet& sheet)
{
    std::size_t part = 0;
    const auto take = [&](String& text) { text = written(pupil.texts.at(part++)); };
    std::ranges::for_each(sheet.abilities, take);
    std::ranges::for_each(sheet.procedures, take);
    std::ranges::for_each(sheet.attitudes, take);
    for (String* text : {&sheet.difficulties, &sheet.assessment, &sheet.measures})
        take(*text);
}

void fillAnswers(const Reading& reading, const Pupil& pupil, Sheet& sheet)
{
    for (const progress::Subject& subject : pupil.subjects) {
        Area area{reading.subjects.at(subject.id)};
        std::ranges::transform(subject.answers, area.answers.begin(),
                               [&](Long key) { return textOf(reading.ratingAnswers, key); });
        sheet.areas.push_back(std::move(area));
    }
    std::ranges::transform(pupil.answers, std::back_inserter(sheet.answers),
                           [&](Long key) { return textOf(reading.guidanceAnswers, key); });
}

Sheet sheetOf(Kind kind, const Reading& reading, const Pupil& pupil)
{
    Sheet sheet;
    sheet.pupil = pupil.id;
    sheet.left = pupil.left;
    sheet.fullName = nameOf(pupil);
    sheet.firstSurname = pupil.surname1;
    sheet.secondSurname = pupil.surname2;
    sheet.name = pupil.given;
    progress::Report report = reportOf(kind, reading, pupil);
    sheet.missing = std::move(report.missing);
    // Nothing is a draft too where nothing is expected.
    if (!report.begun && sheet.missing.empty())
        sheet.missing = {u"todo"};
    fillTexts(pupil, sheet);
    fillAnswers(reading, pupil, sheet);
    return sheet;
}

void refuseOther(Kind kind, const progress::Section& section, const String& teaching)
{
    if (!has(section, kind))
        throw RuntimeError(failure::otherData,
                           statement(u"La sección «{}» no lleva «{}»: {}.",
                                     {Value(section.name), Value(nameOf(kind)),
                                      Value(section.kind == 0 ? String(u"no tiene curso o enseñanza")
                                                              : u"es de «" + teaching + u"»")}));
}

} // namespace

SectionSheets readSheets(Connection& centro, Kind kind, Long section)
{
    SectionSheets result;
    result.kind = kind;
    readHeading(centro, section, result);
    const Reading reading = progress::read(centro, {.section = section,
                                                    .guidance = kind == Kind::guidance,
                                                    .secondary = kind == Kind::secondary,
                                                    .primary = kind == Kind::primary});
    refuseOther(kind, reading.sections.at(section), result.teaching);
    if (kind == Kind::guidance)
        result.questions = questionsOf(reading.questionNames, reading.guidanceAnswers);
    if (kind == Kind::primary)
        result.questions = questionsOf(reading.ratingNames, reading.ratingAnswers);
    std::vector<const Pupil*> pupils;
    for (const Pupil& each : reading.pupils)
        pupils.push_back(&each);
    for (const auto& [pupil, hidden] : listed(kind, pupils)) {
        result.sheets.push_back(sheetOf(kind, reading, *pupil));
        result.sheets.back().number = static_cast<int>(result.sheets.size());
        result.sheets.back().hidden = hidden;
    }
    return result;
}

} // namespace zv::paper
