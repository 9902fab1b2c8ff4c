#include "progress/Reading.h"

#include "data/Cells.h"
#include "data/Statement.h"
#include "runtime/Convert.h"

#include <algorithm>
#include <functional>
#include <span>
#include <unordered_map>

namespace zv::progress {
namespace {

constexpr Long ratedSubjects = 4; ///< Kind of the subjects that the primary report rates.

/// Name for people, in one line.
String named(const String& text, StringView otherwise, Long number)
{
    if (isBlank(text))
        return String(otherwise) + decimalText(number);
    String name = text;
    std::ranges::replace_if(
        name, [](char16_t each) { return each < u' '; }, u' ');
    return name;
}

/// Loader of one reading: each statement into its part.
class Reader {
public:
    Reader(Connection& centro, const Wanted& wanted) : centro_(centro), wanted_(wanted) {}

    Reading read()
    {
        readSections();
        readPupils();
        if (wanted_.guidance)
            readGuidance();
        if (wanted_.secondary || wanted_.primary)
            readTexts();
        if (wanted_.primary)
            readRatings();
        return std::move(reading_);
    }

private:
    void forEachRow(const String& query, const std::function<void(const std::vector<Value>&)>& use)
    {
        for (const RecordsetPtr rows = centro_.Execute(query); !rows->Eof(); rows->MoveNext())
            use(rows->row());
    }
    /// Condition that a column's pupil is of the section that is wanted.
    String ofSection(StringView before, StringView column) const
    {
        return wanted_.section == 0 ? String()
                                    : statement(u"{}{} IN (SELECT IDAlumno FROM Alumno WHERE codseccion={})",
                                                {Value(before), Value(column), wanted_.section});
    }
    Pupil* pupilOf(const Value& key)
    {
        const auto found = places_.find(longIn(key));
        return found == places_.end() ? nullptr : &reading_.pupils[found->second];
    }

    void readSections();
    void readPupils();
    void readNames(const String& query, std::span<String> names);
    void readAnswers(const String& query, std::map<Long, Answer>& answers, std::span<bool> possible);
    void readGuidance();
    void readTexts();
    void readTextsOf(StringView table, std::size_t first, std::size_t last);
    void readRatings();

    Connection& centro_;
    Wanted wanted_;
    Reading reading_;
    std::unordered_map<Long, std::size_t> places_;
};

void Reader::readSections()
{
    String where;
    if (wanted_.section != 0)
        where = statement(u" WHERE Seccion.IDSeccion={}", {wanted_.section});
    forEachRow(u"SELECT Seccion.IDSeccion, Seccion.Descripcion AS Seccion, Curso.Descripcion AS Curso, "
               u"Curso.codTipoEnsenanza, Curso.Orden, Curso.finciclo FROM Seccion LEFT JOIN Curso ON "
               u"Seccion.CodCurso=Curso.IDCurso" +
                   where,
               [&](const std::vector<Value>& row) {
                   const Long id = longIn(row[0]);
                   reading_.sections[id] = {.id = id,
                                            .name = textIn(row[1]),
                                            .course = textIn(row[2]),
                                            .kind = longIn(row[3]),
                                            .year = longIn(row[4]),
                                            .endsCycle = longIn(row[5]) != 0};
               });
}

void Reader::readPupils()
{
    String where;
    if (wanted_.section != 0)
        where = statement(u" WHERE codseccion={}", {wanted_.section});
    forEachRow(u"SELECT IDAlumno, codseccion, fechabaja, Apellido_1, Apellido_2, Nombre FROM Alumno" + where +
                   u" ORDER BY Apellido_1, Apellido_2, Nombre, IDAlumno",
               [&](const std::vector<Value>& row) {
                   Pupil pupil;
                   pupil.id = longIn(row[0]);
                   pupil.section = longIn(row[1]);
                   pupil.left = !textIn(row[2]).empty();
                   pupil.surname1 = textIn(row[3]);
                   pupil.surname2 = textIn(row[4]);
                   pupil.given = textIn(row[5]);
                   places_.emplace(pupil.id, reading_.pupils.size());
                   reading_.pupils.push_back(std::move(pupil));
               });
    if (!wanted_.secondary && !wanted_.primary)
        return;
    if (wanted_.section != 0)
        where = statement(u" WHERE codSeccion={}", {wanted_.section});
    forEachRow(u"SELECT codAlumno, codSeccion FROM Seccion_Alumno" + where,
               [&](const std::vector<Value>& row) {
                   if (Pupil* pupil = pupilOf(row[0]))
                       pupil->paired = pupil->paired || longIn(row[1]) == pupil->section;
               });
}

void Reader::readNames(const String& query, std::span<String> names)
{
    forEachRow(query, [&](const std::vector<Value>& row) {
        const Long number = longIn(row[0]);
        if (number >= 1 && number <= static_cast<Long>(names.size()))
            if (String& name = names[static_cast<std::size_t>(number - 1)]; !isBlank(textIn(row[1])))
                name = named(textIn(row[1]), {}, number);
    });
}

void Reader::readAnswers(const String& query, std::map<Long, Answer>& answers, std::span<bool> possible)
{
    forEachRow(query, [&](const std::vector<Value>& row) {
        String text = textIn(row[2]);
        const Long question = longIn(row[1]);
        const bool isNone = isBlank(text);
        answers[longIn(row[0])] = {question, isNone ? String() : std::move(text)};
        if (!isNone && question >= 1 && question <= static_cast<Long>(possible.size()))
            possible[static_cast<std::size_t>(question - 1)] = true;
    });
}

/// An answer counts where its question's list holds it, whatever section the note is of; of several notes on
/// one question the last, as in the window.
void Reader::readGuidance()
{
    for (std::size_t place = 0; place < questions; ++place)
        reading_.questionNames[place] = named({}, u"La pregunta ", static_cast<Long>(place + 1));
    readNames(u"SELECT IDConsejoOrientador, Descripcion FROM ConsejoOrientador", reading_.questionNames);
    readAnswers(u"SELECT IDCOResp, CodConsejoOrientador, Descripcion FROM ConsejoOrientador_Respuesta",
                reading_.guidanceAnswers, reading_.asked);
    forEachRow(u"SELECT codAlumno, codConsejoOrientador, codCOResp FROM ConsejoOrientador_Nota" +
                   ofSection(u" WHERE ", u"codAlumno") + u" ORDER BY IDCORNota",
               [&](const std::vector<Value>& row) {
                   Pupil* pupil = pupilOf(row[0]);
                   const Long question = longIn(row[1]);
                   if (pupil == nullptr || question < 1 || question > Long{questions})
                       return;
                   const auto answer = reading_.guidanceAnswers.find(longIn(row[2]));
                   pupil->answers[static_cast<std::size_t>(question - 1)] =
                       answer != reading_.guidanceAnswers.end() && answer->second.question == question &&
                               !answer->second.text.empty()
                           ? answer->first
                           : 0;
               });
}

void Reader::readTexts()
{
    readTextsOf(u"Alumno_InfInd", firstCommon, textParts.size());
    if (wanted_.secondary)
        readTextsOf(u"Alumno_InfIndESO", 0, firstCommon);
}

void Reader::readTextsOf(StringView table, std::size_t first, std::size_t last)
{
    String columns;
    for (std::size_t part = first; part < last; ++part)
        columns += u", " + String(textParts[part].column);
    forEachRow(u"SELECT CodAlumno" + columns + u" FROM " + String(table) +
                   ofSection(u" WHERE ", u"CodAlumno"),
               [&](const std::vector<Value>& row) {
                   if (Pupil* pupil = pupilOf(row[0]))
                       for (std::size_t part = first; part < last; ++part)
                           pupil->texts[part] = textIn(row[1 + part - first]);
               });
}

/// An answer counts as long as it is in the catalogue, under whatever type: the dialog shows the first.
void Reader::readRatings()
{
    forEachRow(u"SELECT Alumno_MateriaDetalles.codAlumno, Materia.IDMateria, Materia.Nombre FROM "
               u"Alumno_MateriaDetalles INNER JOIN (MateriaDetalles INNER JOIN Materia ON "
               u"Materia.IDMateria=MateriaDetalles.codMateria) ON MateriaDetalles.IDMateriaDetalles="
               u"Alumno_MateriaDetalles.codMateriaDetalles WHERE Materia.codTipoMateria=" +
                   decimalText(ratedSubjects) + ofSection(u" AND ", u"Alumno_MateriaDetalles.codAlumno") +
                   u" ORDER BY Materia.Nombre, Materia.IDMateria",
               [&](const std::vector<Value>& row) {
                   Pupil* pupil = pupilOf(row[0]);
                   const Long subject = longIn(row[1]);
                   if (pupil == nullptr ||
                       std::ranges::find(pupil->subjects, subject, &Subject::id) != pupil->subjects.end())
                       return;
                   pupil->subjects.push_back({.id = subject});
                   if (const auto [place, isNew] = reading_.subjects.try_emplace(subject); isNew)
                       place->second = named(textIn(row[2]), u"Materia ", subject);
               });
    std::ranges::copy(ratingTabs, reading_.ratingNames.begin());
    readNames(u"SELECT IDTipo, Descripcion FROM TipoInfInd", reading_.ratingNames);
    readAnswers(u"SELECT IDResp, CodTipo, Descripcion FROM TipoRespInfInd", reading_.ratingAnswers,
                reading_.rated);
    forEachRow(u"SELECT CodAlumno, codMateria, codTipo, codResp FROM Alumno_InfIndPrim" +
                   ofSection(u" WHERE ", u"CodAlumno"),
               [&](const std::vector<Value>& row) {
                   Pupil* pupil = pupilOf(row[0]);
                   const Long type = longIn(row[2]);
                   const Long answer = longIn(row[3]);
                   if (pupil == nullptr || type < 1 || type > Long{ratingTabs.size()} ||
                       !reading_.ratingAnswers.contains(answer))
                       return;
                   const auto subject = std::ranges::find(pupil->subjects, longIn(row[1]), &Subject::id);
                   if (subject == pupil->subjects.end())
                       return;
                   Long& first = subject->answers[static_cast<std::size_t>(type - 1)];
                   first = first == 0 ? answer : first;
               });
    for (Pupil& pupil : reading_.pupils)
        for (Subject& subject : pupil.subjects)
            std::ranges::replace_if(
                subject.answers,
                [&](Long answer) { return answer != 0 && reading_.ratingAnswers.at(answer).text.empty(); },
                Long{0});
}

} // namespace

String nameOf(const Pupil& pupil)
{
    String name = pupil.surname1;
    for (const auto& [mark, part] : {std::pair(u" ", &pupil.surname2), std::pair(u", ", &pupil.given)})
        if (!isBlank(*part))
            name += (name.empty() ? u"" : mark) + *part;
    return named(name, u"Alumno ", pupil.id);
}

Reading read(Connection& centro, const Wanted& wanted) { return Reader(centro, wanted).read(); }

} // namespace zv::progress
