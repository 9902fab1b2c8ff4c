#include "care/rules/RuleFacts.h"

#include "data/Schools.h"
#include "data/Statement.h"
#include "runtime/Convert.h"

namespace zv::care {

String inQuotes(StringView text) { return u"«" + String(text) + u"»"; }

String listed(const std::vector<String>& words)
{
    String result;
    for (std::size_t place = 0; place < words.size(); ++place)
        result += (place == 0 ? u"" : place + 1 == words.size() ? u" y " : u", ") + words[place];
    return result;
}

String named(const Answers& answers, Long key)
{
    const auto found = answers.find(key);
    return found == answers.end() ? u"número " + decimalText(key) : inQuotes(found->second.text);
}

const Rows& Facts::rows(StringView query, Database which)
{
    const auto [place, isNew] = rows_.try_emplace({which, String(query)});
    if (!isNew)
        return place->second;
    try {
        for (const RecordsetPtr rows = baseOf(school_, which)->Execute(query); !rows->Eof(); rows->MoveNext())
            place->second.push_back(rows->row());
    } catch (...) {
        rows_.erase(place);
        throw;
    }
    return place->second;
}

String Facts::ofSection(StringView pupilColumn) const
{
    return only_ == 0 ? String()
                      : statement(u"{} IN (SELECT IDAlumno FROM Alumno WHERE codseccion={})",
                                  {Value(pupilColumn), only_});
}

const std::vector<Pupil>& Facts::pupils()
{
    return once(pupils_, [&] {
        String where;
        if (only_ != 0)
            where = statement(u" WHERE codseccion={} OR IDAlumno IN (SELECT codAlumno FROM "
                              u"ConsejoOrientador_Nota WHERE codSeccion={})",
                              {only_, only_});
        std::vector<Pupil> all;
        for (const auto& row : rows(u"SELECT IDAlumno, Apellido_1, Apellido_2, Nombre, codseccion, fechabaja "
                                    u"FROM Alumno" +
                                    where + u" ORDER BY Apellido_1, Apellido_2, Nombre")) {
            Pupil pupil{.id = longIn(row[0]),
                        .section = longIn(row[4]),
                        .left = !textIn(row[5]).empty(),
                        .blank = row[1].isNull() || row[2].isNull() || row[3].isNull(),
                        .name = {}};
            for (const std::size_t part : {3U, 1U, 2U})
                if (const String word = textIn(row[part]); !word.empty())
                    pupil.name += (pupil.name.empty() ? u"" : u" ") + word;
            if (pupil.name.empty())
                pupil.name = u"el alumno número " + decimalText(pupil.id);
            all.push_back(std::move(pupil));
        }
        return all;
    });
}

const Pupil* Facts::pupil(Long id)
{
    const std::vector<Pupil>& all = pupils();
    const auto& places = once(places_, [&] {
        std::unordered_map<Long, std::size_t> result;
        for (std::size_t place = 0; place < all.size(); ++place)
            result.emplace(all[place].id, place);
        return result;
    });
    const auto found = places.find(id);
    return found == places.end() ? nullptr : &all[found->second];
}

const std::map<Long, Section>& Facts::sections()
{
    return once(sections_, [&] {
        std::map<Long, Section> result;
        for (const auto& row : rows(u"SELECT Seccion.IDSeccion, Seccion.Descripcion AS Seccion, "
                                    u"Curso.Descripcion AS Curso, Curso.codTipoEnsenanza, Curso.Orden FROM "
                                    u"Seccion INNER JOIN Curso ON Seccion.CodCurso=Curso.IDCurso"))
            result[longIn(row[0])] = {.name = textIn(row[1]) + u" (" + textIn(row[2]) + u")",
                                      .kind = longIn(row[3]),
                                      .year = longIn(row[4])};
        return result;
    });
}

const Section& Facts::section(Long id)
{
    static const Section none{.name = u"una sección que ya no está"};
    const auto found = sections().find(id);
    return found == sections().end() ? none : found->second;
}

const std::vector<Note>& Facts::notes()
{
    return once(notes_, [&] {
        String where;
        if (only_ != 0)
            where = u" WHERE " + ofSection(u"codAlumno") + statement(u" OR codSeccion={}", {only_});
        std::vector<Note> all;
        for (const auto& row :
             rows(u"SELECT IDCORNota, codAlumno, codSeccion, codCOResp, codConsejoOrientador "
                  u"FROM ConsejoOrientador_Nota" +
                  where + u" ORDER BY IDCORNota"))
            all.push_back({.key = longIn(row[0]),
                           .pupil = longIn(row[1]),
                           .section = longIn(row[2]),
                           .answer = longIn(row[3]),
                           .question = longIn(row[4]),
                           .broken = row[2].isNull() || row[3].isNull() || row[4].isNull()});
        return all;
    });
}

namespace {

Answers answersIn(const Rows& rows)
{
    Answers result;
    for (const auto& row : rows)
        result[longIn(row[0])] = {
            .question = longIn(row[1]), .text = textIn(row[2]), .missing = row[2].isNull()};
    return result;
}

} // namespace

const Answers& Facts::answers()
{
    return once(answers_, [&] {
        return answersIn(
            rows(u"SELECT IDCOResp, CodConsejoOrientador, Descripcion FROM ConsejoOrientador_Respuesta"));
    });
}

const Answers& Facts::ratingAnswers()
{
    return once(ratingAnswers_,
                [&] { return answersIn(rows(u"SELECT IDResp, CodTipo, Descripcion FROM TipoRespInfInd")); });
}

const std::map<Long, String>& Facts::names(StringView table, StringView key, StringView column,
                                           Database which)
{
    const Rows& read =
        rows(statement(u"SELECT {}, {} FROM {}", {Value(key), Value(column), Value(table)}), which);
    const auto [place, isNew] = names_.try_emplace({which, String(table) + u"." + String(column)});
    if (isNew)
        for (const auto& row : read)
            place->second[longIn(row[0])] = textIn(row[1]);
    return place->second;
}

Finding& Found::add(StringView table, Long row, String text, String remedy)
{
    all_.push_back({.rule = rule_,
                    .advice = advice_,
                    .text = std::move(text),
                    .remedy = std::move(remedy),
                    .table = table,
                    .row = row,
                    .section = 0,
                    .repair = {}});
    return all_.back();
}

} // namespace zv::care
