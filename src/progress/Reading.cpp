#include "progress/Reading.h"

#include "data/Cells.h"
#include "data/Statement.h"
#include "runtime/Convert.h"

#include <algorithm>
#include <functional>
#include <unordered_map>
#include <unordered_set>

namespace zv::progress {
namespace {

constexpr Long ratedSubjects = 4; ///< Kind of the subjects that the primary report rates.

unsigned bitOf(Long number) { return 1U << static_cast<unsigned>(number - 1); }

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
               u"Curso.codTipoEnsenanza, Curso.Orden, Curso.finciclo FROM Seccion INNER JOIN Curso ON "
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
                   u" ORDER BY Apellido_1, Apellido_2, Nombre",
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

/// An answer counts where its question's list holds it, whatever section the note is of.
void Reader::readGuidance()
{
    for (std::size_t place = 0; place < questions; ++place)
        reading_.questionNames[place] = u"La pregunta " + decimalText(static_cast<Long>(place + 1));
    const auto isQuestion = [](Long number) { return number >= 1 && number <= Long{questions}; };
    forEachRow(u"SELECT IDConsejoOrientador, Descripcion FROM ConsejoOrientador",
               [&](const std::vector<Value>& row) {
                   const Long number = longIn(row[0]);
                   if (const String name = textIn(row[1]); isQuestion(number) && !isBlank(name))
                       reading_.questionNames[static_cast<std::size_t>(number - 1)] = name;
               });
    std::unordered_map<Long, Long> questionOf;
    forEachRow(u"SELECT IDCOResp, CodConsejoOrientador FROM ConsejoOrientador_Respuesta",
               [&](const std::vector<Value>& row) {
                   if (const Long number = longIn(row[1]); isQuestion(number)) {
                       questionOf[longIn(row[0])] = number;
                       reading_.asked |= bitOf(number);
                   }
               });
    forEachRow(u"SELECT codAlumno, codConsejoOrientador, codCOResp FROM ConsejoOrientador_Nota WHERE "
               u"codCOResp>0" +
                   ofSection(u" AND ", u"codAlumno"),
               [&](const std::vector<Value>& row) {
                   const auto answer = questionOf.find(longIn(row[2]));
                   Pupil* pupil = pupilOf(row[0]);
                   if (pupil != nullptr && answer != questionOf.end() && answer->second == longIn(row[1]))
                       pupil->answered |= bitOf(answer->second);
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

/// An answer counts as long as it is in the catalogue, under whatever type: the dialog shows it.
void Reader::readRatings()
{
    std::unordered_map<Long, Long> sectionOfTaught;
    forEachRow(u"SELECT Alumno_MateriaDetalles.codAlumno, Materia.IDMateria, Materia.Nombre FROM "
               u"Alumno_MateriaDetalles INNER JOIN (MateriaDetalles INNER JOIN Materia ON "
               u"Materia.IDMateria=MateriaDetalles.codMateria) ON MateriaDetalles.IDMateriaDetalles="
               u"Alumno_MateriaDetalles.codMateriaDetalles WHERE Materia.codTipoMateria=" +
                   decimalText(ratedSubjects) + ofSection(u" AND ", u"Alumno_MateriaDetalles.codAlumno"),
               [&](const std::vector<Value>& row) {
                   Pupil* pupil = pupilOf(row[0]);
                   const Long subject = longIn(row[1]);
                   if (pupil == nullptr ||
                       std::ranges::find(pupil->subjects, subject, &Subject::id) != pupil->subjects.end())
                       return;
                   pupil->subjects.push_back({.id = subject});
                   if (const auto [place, isNew] = reading_.subjects.try_emplace(subject); isNew)
                       place->second = textIn(row[2]);
               });
    std::unordered_set<Long> answers;
    forEachRow(u"SELECT IDResp, CodTipo FROM TipoRespInfInd", [&](const std::vector<Value>& row) {
        answers.insert(longIn(row[0]));
        if (const Long type = longIn(row[1]); type >= 1 && type <= Long{ratingTabs.size()})
            reading_.rated |= bitOf(type);
    });
    forEachRow(u"SELECT CodAlumno, codMateria, codTipo, codResp FROM Alumno_InfIndPrim WHERE codResp>0" +
                   ofSection(u" AND ", u"CodAlumno"),
               [&](const std::vector<Value>& row) {
                   Pupil* pupil = pupilOf(row[0]);
                   const Long type = longIn(row[2]);
                   if (pupil == nullptr || type < 1 || type > Long{ratingTabs.size()} ||
                       !answers.contains(longIn(row[3])))
                       return;
                   const auto subject = std::ranges::find(pupil->subjects, longIn(row[1]), &Subject::id);
                   if (subject != pupil->subjects.end())
                       subject->rated |= bitOf(type);
               });
}

} // namespace

Reading read(Connection& centro, const Wanted& wanted) { return Reader(centro, wanted).read(); }

} // namespace zv::progress
