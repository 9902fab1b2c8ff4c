#include "paper/Sheet.h"

#include "data/Cells.h"
#include "data/Statement.h"
#include "progress/Reading.h"
#include "runtime/Convert.h"

#include <algorithm>
#include <map>
#include <optional>

namespace zv::paper {
namespace {

using Rows = std::vector<std::vector<Value>>;
using Places = std::map<Long, std::size_t>;

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
        if (error.number() != failure::tableMissing && error.number() != failure::columnMissing)
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
    section.school = readText(centro, u"SELECT Nombre FROM Centro ORDER BY IDCentro");
    const String tutor = u" FROM Personal INNER JOIN Seccion ON Personal.IDPersonal=Seccion.CodTutor WHERE "
                         u"Seccion.IDSeccion=" +
                         decimalText(id);
    for (const StringView part : {u"Nombre", u"Apellido_1", u"Apellido_2"}) {
        const String text = readText(centro, u"SELECT Personal." + String(part) + tutor);
        section.tutor += (section.tutor.empty() || text.empty() ? u"" : u" ") + text;
    }
}

/// Questions up to a number, in the order of their keys; one that the school lacks has no text.
std::vector<Question> readQuestions(Connection& centro, StringView questions, StringView answers,
                                    std::size_t most)
{
    std::vector<Question> result(most);
    for (std::size_t place = 0; place < most; ++place)
        result[place].id = static_cast<Long>(place + 1);
    const auto at = [&](const Value& id) {
        const Long place = longIn(id);
        return place >= 1 && place <= static_cast<Long>(most) ? &result[static_cast<std::size_t>(place) - 1]
                                                              : nullptr;
    };
    for (const auto& row : read(centro, String(questions)))
        if (Question* question = at(row[0]))
            question->text = textIn(row[1]);
    for (const auto& row : read(centro, String(answers)))
        if (Question* question = at(row[0]))
            question->answers.push_back(textIn(row[1]));
    return result;
}

/// Adds the pupil of a row that begins with key and names. Nothing if he is there already: a broken school
/// may pair him twice.
Sheet* add(SectionSheets& section, Places& places, const std::vector<Value>& row)
{
    if (!places.emplace(longIn(row[0]), section.sheets.size()).second)
        return nullptr;
    section.sheets.push_back({.pupil = longIn(row[0]),
                              .number = static_cast<int>(section.sheets.size()) + 1,
                              .firstSurname = textIn(row[1]),
                              .secondSurname = textIn(row[2]),
                              .name = textIn(row[3]),
                              .difficulties = {},
                              .assessment = {},
                              .measures = {}});
    return &section.sheets.back();
}

Sheet* sheetOf(SectionSheets& section, const Places& places, const Value& pupil)
{
    const auto place = places.find(longIn(pupil));
    return place == places.end() ? nullptr : &section.sheets[place->second];
}

/// Condition of those whom the section holds by their own row.
String ofSection(StringView column, Long id)
{
    return statement(u"{} IN (SELECT IDAlumno FROM Alumno WHERE codseccion={})", {Value(column), id});
}

Places readReports(Connection& centro, Long id, SectionSheets& section)
{
    const bool secondary = section.kind == Kind::secondary;
    const Rows rows = read(
        centro,
        u"SELECT Alumno.IDAlumno, Alumno.Apellido_1, Alumno.Apellido_2, Alumno.Nombre, Alumno.fechabaja, "
        u"Alumno_InfInd.Dificultad, Alumno_InfInd.Valoracion, Alumno_InfInd.Apreciacion" +
            String(secondary ? u", Alumno1, Alumno2, Alumno3, Alumno4, Alumno5, Procedimiento1, "
                               u"Procedimiento2, Procedimiento3, Procedimiento4, Procedimiento5, Actitud1, "
                               u"Actitud2"
                             : u"") +
            u" FROM " + (secondary ? u"((" : u"(") +
            u"Alumno INNER JOIN Seccion_Alumno ON Alumno.IDAlumno=Seccion_Alumno.codAlumno AND "
            u"Alumno.codseccion=Seccion_Alumno.codSeccion) LEFT JOIN Alumno_InfInd ON "
            u"Alumno.IDAlumno=Alumno_InfInd.CodAlumno" +
            (secondary ? u") LEFT JOIN Alumno_InfIndESO ON Alumno.IDAlumno=Alumno_InfIndESO.CodAlumno"
                       : u"") +
            u" WHERE Alumno.codseccion=" + decimalText(id) +
            u" ORDER BY Alumno.Apellido_1, Alumno.Apellido_2, Alumno.Nombre, Alumno.IDAlumno");
    Places places;
    for (const auto& row : rows) {
        Sheet* sheet = add(section, places, row);
        if (sheet == nullptr)
            continue;
        sheet->left = !textIn(row[4]).empty();
        std::size_t column = 5;
        const auto take = [&](String& text) { text = textIn(row[column++]); };
        for (String* text : {&sheet->difficulties, &sheet->assessment, &sheet->measures})
            take(*text);
        if (!secondary)
            continue;
        std::ranges::for_each(sheet->abilities, take);
        std::ranges::for_each(sheet->procedures, take);
        std::ranges::for_each(sheet->attitudes, take);
    }
    return places;
}

/// The areas are those that the report's window lists; the first answer counts, whatever its kind is now.
void readRatings(Connection& centro, Long id, SectionSheets& section, const Places& places)
{
    section.questions = readQuestions(centro, u"SELECT IDTipo, Descripcion FROM TipoInfInd",
                                      u"SELECT CodTipo, Descripcion FROM TipoRespInfInd ORDER BY IDResp",
                                      progress::ratingTabs.size());
    for (std::size_t place = 0; place < progress::ratingTabs.size(); ++place)
        if (section.questions[place].text.empty())
            section.questions[place].text = progress::ratingTabs[place];
    std::map<std::pair<Long, Long>, std::size_t> areas;
    for (const auto& row :
         read(centro, u"SELECT Alumno_MateriaDetalles.codAlumno, Materia.IDMateria, Materia.Nombre FROM "
                      u"Alumno_MateriaDetalles INNER JOIN (MateriaDetalles INNER JOIN Materia ON "
                      u"Materia.IDMateria=MateriaDetalles.codMateria) ON "
                      u"MateriaDetalles.IDMateriaDetalles=Alumno_MateriaDetalles.codMateriaDetalles WHERE "
                      u"Materia.codTipoMateria=4 AND " +
                          ofSection(u"Alumno_MateriaDetalles.codAlumno", id) +
                          u" ORDER BY Materia.Nombre, Materia.IDMateria"))
        if (Sheet* sheet = sheetOf(section, places, row[0]);
            sheet != nullptr &&
            areas.emplace(std::pair(sheet->pupil, longIn(row[1])), sheet->areas.size()).second)
            sheet->areas.push_back({textIn(row[2])});
    for (const auto& row :
         read(centro, u"SELECT Alumno_InfIndPrim.CodAlumno, Alumno_InfIndPrim.codMateria, "
                      u"Alumno_InfIndPrim.codTipo, TipoRespInfInd.Descripcion FROM Alumno_InfIndPrim INNER "
                      u"JOIN TipoRespInfInd ON Alumno_InfIndPrim.codResp=TipoRespInfInd.IDResp WHERE " +
                          ofSection(u"Alumno_InfIndPrim.CodAlumno", id))) {
        Sheet* sheet = sheetOf(section, places, row[0]);
        const auto area = areas.find({longIn(row[0]), longIn(row[1])});
        const Long type = longIn(row[2]);
        if (sheet == nullptr || area == areas.end() || type < 1 ||
            type > static_cast<Long>(progress::ratingTabs.size()))
            continue;
        String& answer = sheet->areas[area->second].answers[static_cast<std::size_t>(type) - 1];
        if (answer.empty())
            answer = textIn(row[3]);
    }
}

/// Those who have left get no advice. An answer that belongs to another question now shows as none, and of
/// several notes on one question the last counts, as in the window.
void readGuidance(Connection& centro, Long id, SectionSheets& section)
{
    section.questions = readQuestions(
        centro, u"SELECT IDConsejoOrientador, Descripcion FROM ConsejoOrientador",
        u"SELECT CodConsejoOrientador, Descripcion FROM ConsejoOrientador_Respuesta ORDER BY IDCOResp",
        progress::questions);
    Places places;
    for (const auto& row :
         read(centro, u"SELECT IDAlumno, Apellido_1, Apellido_2, Nombre FROM Alumno WHERE (fechabaja='' OR "
                      u"fechabaja IS NULL) AND codseccion=" +
                          decimalText(id) + u" ORDER BY Apellido_1, Apellido_2, Nombre, IDAlumno"))
        if (Sheet* sheet = add(section, places, row))
            sheet->answers.resize(progress::questions);
    for (const auto& row : read(
             centro, u"SELECT ConsejoOrientador_Nota.codAlumno, ConsejoOrientador_Nota.codConsejoOrientador, "
                     u"ConsejoOrientador_Respuesta.CodConsejoOrientador AS deLaRespuesta, "
                     u"ConsejoOrientador_Respuesta.Descripcion FROM ConsejoOrientador_Nota LEFT JOIN "
                     u"ConsejoOrientador_Respuesta ON "
                     u"ConsejoOrientador_Nota.codCOResp=ConsejoOrientador_Respuesta.IDCOResp WHERE " +
                         ofSection(u"ConsejoOrientador_Nota.codAlumno", id) + u" ORDER BY IDCORNota")) {
        Sheet* sheet = sheetOf(section, places, row[0]);
        const Long question = longIn(row[1]);
        if (sheet == nullptr || question < 1 || question > static_cast<Long>(progress::questions))
            continue;
        sheet->answers[static_cast<std::size_t>(question) - 1] =
            longIn(row[2]) == question ? textIn(row[3]) : String();
    }
}

} // namespace

String Sheet::fullName() const
{
    return firstSurname + (secondSurname.empty() ? u"" : u" ") + secondSurname + u", " + name;
}

SectionSheets readSheets(Connection& centro, Kind kind, Long section)
{
    SectionSheets result;
    result.kind = kind;
    readHeading(centro, section, result);
    if (kind == Kind::guidance) {
        readGuidance(centro, section, result);
        return result;
    }
    const Places places = readReports(centro, section, result);
    if (kind == Kind::primary)
        readRatings(centro, section, result, places);
    return result;
}

} // namespace zv::paper
