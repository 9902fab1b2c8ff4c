// What the dialogs of the individual reports do with a section: they list the pupils that are paired with it,
// decide by one table alone whether a pupil is new, and save each of them by position and key.
#include "care/rules/RuleFacts.h"

#include "data/Statement.h"
#include "runtime/Convert.h"

#include <algorithm>
#include <set>
#include <tuple>

namespace zv::care {
namespace {

constexpr StringView common = u"Alumno_InfInd";
constexpr StringView secondary = u"Alumno_InfIndESO";
constexpr StringView ratingsTable = u"Alumno_InfIndPrim";

/// " WHERE ..." of the section that is looked at.
String whereOf(const Facts& facts, StringView column)
{
    const String condition = facts.ofSection(column);
    return condition.empty() ? condition : u" WHERE " + condition;
}

/// How many rows of a table each pupil has.
std::map<Long, Long> rowsByPupil(Facts& facts, StringView table)
{
    std::map<Long, Long> result;
    for (const auto& row :
         facts.rows(u"SELECT CodAlumno FROM " + String(table) + whereOf(facts, u"CodAlumno")))
        ++result[longIn(row[0])];
    return result;
}

/// Pupil and section of each row of the table of pairs.
std::set<std::pair<Long, Long>> pairsOf(Facts& facts)
{
    std::set<std::pair<Long, Long>> pairs;
    for (const auto& row :
         facts.rows(u"SELECT codAlumno, codSeccion FROM Seccion_Alumno" + whereOf(facts, u"codAlumno")))
        pairs.emplace(longIn(row[0]), longIn(row[1]));
    return pairs;
}

/// Pupils of the section by both accounts of it, that of the pupil and that of the pairs.
std::vector<const Pupil*> listedPupils(Facts& facts, Kind kind)
{
    const auto pairs = pairsOf(facts);
    std::vector<const Pupil*> result;
    for (const Pupil& pupil : facts.pupils())
        if (facts.looksAt(pupil.section) && has(facts.section(pupil.section), kind) &&
            pairs.contains({pupil.id, pupil.section}))
            result.push_back(&pupil);
    return result;
}

void missing(Facts& facts, Found& found)
{
    const auto pairs = pairsOf(facts);
    for (const Pupil& pupil : facts.pupils()) {
        const Section& section = facts.section(pupil.section);
        if (pupil.left || !facts.looksAt(pupil.section) ||
            !(has(section, Kind::primary) || has(section, Kind::secondary)) ||
            pairs.contains({pupil.id, pupil.section}))
            continue;
        found
            .add(
                u"Alumno", pupil.id,
                statement(
                    u"En el informe de {} no sale {}: es su sección, pero el alumno no figura entre los "
                    u"de ella.",
                    {section.name, pupil.name}),
                u"Pida a quien lleva los alumnos que lo ponga otra vez en su sección (tabla Seccion_Alumno).")
            .section = pupil.section;
    }
}

void noSecondaryRow(Facts& facts, Found& found)
{
    const std::map<Long, Long> have = rowsByPupil(facts, common);
    const std::map<Long, Long> own = rowsByPupil(facts, secondary);
    for (const Pupil* pupil : listedPupils(facts, Kind::secondary)) {
        if (!have.contains(pupil->id) || own.contains(pupil->id))
            continue;
        Finding& one = found.add(
            secondary, pupil->id,
            statement(
                u"Al aceptar el informe de {} se pierde, sin aviso, lo que se escriba de {} en las tres "
                u"primeras pestañas: tiene el informe común y le falta su fila del de ESO.",
                {facts.section(pupil->section).name, pupil->name}),
            u"Añádale la fila, vacía, antes de escribir.");
        one.section = pupil->section;
        one.repair = [id = pupil->id](Connection& centro) {
            centro.Execute(statement(
                u"INSERT INTO Alumno_InfIndESO VALUES ({},'','','','','','','','','','','','')", {id}));
        };
    }
}

void noCommonRow(Facts& facts, Found& found)
{
    const std::map<Long, Long> have = rowsByPupil(facts, common);
    const std::map<Long, Long> own = rowsByPupil(facts, secondary);
    for (const Pupil* pupil : listedPupils(facts, Kind::secondary)) {
        if (have.contains(pupil->id) || !own.contains(pupil->id))
            continue;
        Finding& one = found.add(
            common, pupil->id,
            statement(
                u"El informe de {} no se podrá guardar: al llegar a {} dice «Ya hay una fila con esa "
                u"clave.», y de los alumnos que van detrás no se guarda nada. Tiene su fila del informe "
                u"de ESO y le falta la del común.",
                {facts.section(pupil->section).name, pupil->name}),
            u"Añádale la fila, vacía, antes de abrir esa sección.");
        one.section = pupil->section;
        one.repair = [id = pupil->id](Connection& centro) {
            centro.Execute(statement(u"INSERT INTO Alumno_InfInd VALUES ({},'','','')", {id}));
        };
    }
}

void orphans(Facts& facts, Found& found)
{
    if (facts.onlySection() != 0)
        return;
    std::map<Long, std::pair<StringView, Long>> lost;
    for (const StringView table : {common, secondary, ratingsTable})
        for (const auto& [id, count] : rowsByPupil(facts, table))
            if (facts.pupil(id) == nullptr) {
                auto& [where, rows] = lost.try_emplace(id, table, 0).first->second;
                rows += count;
            }
    for (const auto& [id, where] : lost)
        found.add(
            where.first, id,
            statement(u"Del alumno número {}, que ya no está, quedan filas de su informe individual ({}): "
                      u"ninguna ventana las muestra ni las borra.",
                      {id, where.second}),
            u"Si el alumno se borró por error, restáurelo; si no, pida a quien lleva la base de datos que "
            u"las quite.");
}

/// Subjects of the primary report, a row for each of a pupil.
const Rows& subjects(Facts& facts)
{
    String where = facts.ofSection(u"Alumno_MateriaDetalles.codAlumno");
    if (!where.empty())
        where = u" AND " + where;
    return facts.rows(
        u"SELECT Alumno_MateriaDetalles.codAlumno, MateriaDetalles.codMateria, Materia.Nombre FROM "
        u"Alumno_MateriaDetalles INNER JOIN (MateriaDetalles INNER JOIN Materia ON "
        u"Materia.IDMateria=MateriaDetalles.codMateria) ON MateriaDetalles.IDMateriaDetalles="
        u"Alumno_MateriaDetalles.codMateriaDetalles WHERE Materia.codTipoMateria=4" +
        where);
}

/// A collection takes each key once: of a pupil, and of his subjects.
void unopenable(Facts& facts, Found& found)
{
    const auto report = [&](const Pupil& pupil, StringView table, StringView why, StringView remedy) {
        found
            .add(table, pupil.id,
                 statement(u"El informe de {} no se puede abrir: {} {}.",
                           {facts.section(pupil.section).name, pupil.name, Value(why)}),
                 String(remedy))
            .section = pupil.section;
    };
    std::map<Long, std::map<Long, std::pair<Long, String>>> taken;
    std::set<Long> nameless;
    for (const auto& row : subjects(facts)) {
        auto& [count, name] = taken[longIn(row[0])][longIn(row[1])];
        ++count;
        name = textIn(row[2]);
        if (row[2].isNull())
            nameless.insert(longIn(row[0]));
    }
    for (const Pupil* pupil : listedPupils(facts, Kind::primary)) {
        for (const auto& [subject, what] : taken[pupil->id])
            if (what.first > 1)
                report(*pupil, u"Alumno_MateriaDetalles",
                       u"tiene " + inQuotes(what.second) + u" " + decimalText(what.first) + u" veces",
                       u"Pida a quien lleva las materias de los alumnos que se la quite una vez.");
        if (nameless.contains(pupil->id))
            report(*pupil, u"Materia", u"cursa una materia que no tiene nombre",
                   u"Pida a quien lleva las materias que se lo ponga.");
    }
    const std::map<Long, Long> shared = rowsByPupil(facts, common);
    const std::map<Long, Long> own = rowsByPupil(facts, secondary);
    for (const auto kind : {Kind::primary, Kind::secondary})
        for (const Pupil* pupil : listedPupils(facts, kind)) {
            const auto isDouble = [&](const std::map<Long, Long>& rows) {
                const auto place = rows.find(pupil->id);
                return place != rows.end() && place->second > 1;
            };
            if (isDouble(shared) || (kind == Kind::secondary && isDouble(own)))
                report(*pupil, common, u"tiene dos veces su informe",
                       u"Pida a quien lleva la base de datos que deje el que vale.");
        }
}

struct Rating {
    Long pupil = 0;
    Long subject = 0;
    Long type = 0;
    Long answer = 0;
};

/// Ratings that say something, of pupils whom the primary report lists, and whether he takes their subject.
template <class Use>
void forEachRating(Facts& facts, Use use)
{
    std::map<Long, const Pupil*> listed;
    for (const Pupil* pupil : listedPupils(facts, Kind::primary))
        listed[pupil->id] = pupil;
    std::set<std::pair<Long, Long>> taken;
    for (const auto& row : subjects(facts))
        taken.emplace(longIn(row[0]), longIn(row[1]));
    for (const auto& row :
         facts.rows(u"SELECT CodAlumno, codMateria, codTipo, codResp FROM Alumno_InfIndPrim" +
                    whereOf(facts, u"CodAlumno"))) {
        const Rating rating{longIn(row[0]), longIn(row[1]), longIn(row[2]), longIn(row[3])};
        if (const auto pupil = listed.find(rating.pupil); pupil != listed.end() && rating.answer > 0)
            use(rating, *pupil->second, taken.contains({rating.pupil, rating.subject}));
    }
}

String subjectName(Facts& facts, Long subject)
{
    const auto& names = facts.names(u"Materia", u"IDMateria", u"Nombre");
    const auto found = names.find(subject);
    return found == names.end() ? u"la materia número " + decimalText(subject) : found->second;
}

String typeName(Facts& facts, Long type)
{
    const auto& names = facts.names(u"TipoInfInd", u"IDTipo", u"Descripcion");
    const auto found = names.find(type);
    return found == names.end() ? u"la pestaña " + decimalText(type) : inQuotes(found->second);
}

/// The report's five tabs.
bool hasTab(Long type) { return type >= 1 && type <= 5; }

void movedRating(Facts& facts, Found& found)
{
    forEachRating(facts, [&](const Rating& rating, const Pupil& pupil, bool taken) {
        const auto answer = facts.ratingAnswers().find(rating.answer);
        if (!taken || !hasTab(rating.type) || answer == facts.ratingAnswers().end() ||
            answer->second.question == rating.type)
            return;
        found
            .add(
                ratingsTable, pupil.id,
                statement(
                    u"En el informe de {}, al pulsar {} de {} en {} sale un error: su respuesta, {}, ahora "
                    u"es de {}.",
                    {facts.section(pupil.section).name, subjectName(facts, rating.subject), pupil.name,
                     typeName(facts, rating.type), inQuotes(answer->second.text),
                     typeName(facts, answer->second.question)}),
                u"Devuelva la respuesta a su pestaña, en «Respuestas de los informes»; para la otra cree una "
                u"nueva.")
            .section = pupil.section;
    });
}

void deletedRating(Facts& facts, Found& found)
{
    forEachRating(facts, [&](const Rating& rating, const Pupil& pupil, bool taken) {
        if (!taken || !hasTab(rating.type) || facts.ratingAnswers().contains(rating.answer))
            return;
        const auto& bin = facts.names(u"TipoRespInfInd", u"IDResp", u"Descripcion", Database::borrado);
        const auto kept = bin.find(rating.answer);
        const bool isKept = kept != bin.end() && !kept->second.empty();
        found
            .add(ratingsTable, pupil.id,
                 statement(
                     u"En el informe de {} sale vacía la valoración {} de {} en {} ({}): se ha eliminado. Al "
                     u"aceptar la pierde.",
                     {facts.section(pupil.section).name,
                      isKept ? inQuotes(kept->second) : u"número " + decimalText(rating.answer), pupil.name,
                      subjectName(facts, rating.subject), typeName(facts, rating.type)}),
                 isKept ? u"Restáurela de la papelera antes de que nadie acepte ese informe."
                        : u"Póngale otra.")
            .section = pupil.section;
    });
}

void doubleRating(Facts& facts, Found& found)
{
    std::map<std::tuple<Long, Long, Long>, std::set<Long>> given;
    forEachRating(facts, [&](const Rating& rating, const Pupil&, bool taken) {
        if (taken && hasTab(rating.type))
            given[{rating.pupil, rating.subject, rating.type}].insert(rating.answer);
    });
    for (const auto& [place, answers] : given) {
        if (answers.size() < 2)
            continue;
        const auto& [id, subject, type] = place;
        const Pupil& pupil = *facts.pupil(id);
        std::vector<String> words;
        for (const Long answer : answers)
            words.push_back(named(facts.ratingAnswers(), answer));
        found
            .add(ratingsTable, id,
                 statement(u"En el informe de {}, {} tiene dos valoraciones de {} en {}, {}: se ve una, y al "
                           u"aceptar se pierde la otra.",
                           {facts.section(pupil.section).name, pupil.name, subjectName(facts, subject),
                            typeName(facts, type), listed(words)}),
                 u"Abra el informe, elija la que vale y acepte.")
            .section = pupil.section;
    }
}

void droppedRating(Facts& facts, Found& found)
{
    std::map<std::pair<Long, Long>, Long> dropped;
    forEachRating(facts, [&](const Rating& rating, const Pupil&, bool taken) {
        if (!taken || !hasTab(rating.type))
            ++dropped[{rating.pupil, rating.subject}];
    });
    for (const auto& [place, count] : dropped) {
        const Pupil& pupil = *facts.pupil(place.first);
        found
            .add(
                ratingsTable, pupil.id,
                statement(
                    u"Al aceptar el informe de {} se borran valoraciones de {} en {} ({}): la ventana no "
                    u"las muestra, porque ya no cursa la materia o ésta no lleva el informe.",
                    {facts.section(pupil.section).name, pupil.name, subjectName(facts, place.second), count}),
                u"Si debe cursarla, pida que se la pongan otra vez antes de que nadie acepte ese informe.")
            .section = pupil.section;
    }
}

void otherName(Facts& facts, Found& found)
{
    for (const Kind kind : {Kind::secondary, Kind::primary})
        for (const progress::Report& report :
             progress::panel(facts.centro(), {.kind = kind, .section = facts.onlySection()}).reports)
            for (const progress::Stranger& each : report.strangers)
                found
                    .add(each.common ? common : secondary, report.pupil,
                         statement(u"En el informe de {}, de {}: {}",
                                   {facts.section(report.section).name, report.name, strangerText(each)}),
                         u"Mire si el texto se copió de otro alumno; si no, déjelo.")
                    .section = report.section;
}

constexpr Rule rules[] = {
    {u"informe-no-abre", Area::reports, false, unopenable},
    {u"informe-sin-alumno", Area::reports, false, missing},
    {u"informe-huerfano", Area::reports, false, orphans},
    {u"eso-sin-fila", Area::reports, false, noSecondaryRow},
    {u"eso-sin-comun", Area::reports, false, noCommonRow},
    {u"primaria-respuesta-movida", Area::reports, false, movedRating},
    {u"primaria-respuesta-eliminada", Area::reports, false, deletedRating},
    {u"primaria-repetida", Area::reports, false, doubleRating},
    {u"primaria-de-mas", Area::reports, false, droppedRating},
    {u"informe-otro-nombre", Area::reports, true, otherName},
};

} // namespace

std::span<const Rule> reportRules() { return rules; }

} // namespace zv::care
