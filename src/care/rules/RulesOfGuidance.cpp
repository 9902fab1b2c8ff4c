// What the dialog of the guidance advice does with a section: it lists the pupils by a search in a text,
// reads all notes of each, shows and saves those of known questions, and deletes at the end the notes of the
// section that belong to nobody in its list.
#include "care/rules/RuleFacts.h"

#include "data/Statement.h"
#include "runtime/Convert.h"

#include <algorithm>
#include <limits>
#include <set>

namespace zv::care {
namespace {

constexpr Long questions = 8;
/// What a list of the dialog can hold beside its empty entry before the search in it overflows.
constexpr Long mostAnswers = 255;
constexpr Long largestPupil = std::numeric_limits<Integer>::max();
constexpr StringView notesTable = u"ConsejoOrientador_Nota";
constexpr StringView answersTable = u"ConsejoOrientador_Respuesta";

String answersGiven(std::size_t count)
{
    return decimalText(static_cast<Long>(count)) + (count == 1 ? u" respuesta" : u" respuestas");
}

const std::map<Long, String>& questionNames(Facts& facts)
{
    return facts.names(u"ConsejoOrientador", u"IDConsejoOrientador", u"Descripcion");
}

String questionName(Facts& facts, Long question)
{
    const auto& names = questionNames(facts);
    const auto found = names.find(question);
    return found == names.end() || found->second.empty() ? u"la pregunta " + decimalText(question)
                                                         : inQuotes(found->second);
}

bool isListed(Facts& facts, const Pupil& pupil)
{
    return !pupil.left && facts.looksAt(pupil.section) && has(facts.section(pupil.section), Kind::guidance);
}

/// The dialog deletes when it saves, and saves nothing of a section in which it lists nobody.
bool listsSomebody(Facts& facts, Long section)
{
    return std::ranges::any_of(
        facts.pupils(), [&](const Pupil& each) { return each.section == section && isListed(facts, each); });
}

/// "Al aceptar el consejo de 2º A (2º de ESO) se borra"
String acceptDeletes(Facts& facts, Long section)
{
    return u"Al aceptar el consejo de " + facts.section(section).name +
           (listsSomebody(facts, section) ? u"" : u", en cuanto esa sección tenga algún alumno,") +
           u" se borra";
}

using NotesOf = std::map<Long, std::vector<const Note*>>;

/// Notes by pupil, of those whom a dialog lists.
NotesOf listedNotes(Facts& facts)
{
    NotesOf result;
    for (const Note& note : facts.notes())
        if (const Pupil* pupil = facts.pupil(note.pupil); pupil != nullptr && isListed(facts, *pupil))
            result[note.pupil].push_back(&note);
    return result;
}

/// The dialog's search for a pupil in the text of its list finds 12 in 112: he is not listed, and what is not
/// listed is deleted.
void hidden(Facts& facts, Found& found)
{
    struct Listed {
        String text;
        std::vector<const Pupil*> pupils;
    };
    std::map<Long, Listed> lists;
    std::map<std::pair<Long, Long>, std::size_t> given;
    for (const Note& note : facts.notes())
        ++given[{note.section, note.pupil}];
    for (const Pupil& pupil : facts.pupils()) {
        const Section& section = facts.section(pupil.section);
        const auto notes = given.find({pupil.section, pupil.id});
        if (!isListed(facts, pupil) || (!offers(Kind::guidance, section) && notes == given.end()))
            continue;
        Listed& list = lists[pupil.section];
        const String entry = decimalText(pupil.id) + u" ,";
        if (list.text.find(entry) == String::npos) {
            list.text += entry;
            list.pupils.push_back(&pupil);
            continue;
        }
        const auto before = std::ranges::find_if(
            list.pupils, [&](const Pupil* each) { return (decimalText(each->id) + u" ,").ends_with(entry); });
        const String who = before == list.pupils.end()
                               ? String(u"otro que sale antes")
                               : (*before)->name + u" (" + decimalText((*before)->id) + u"), que sale antes";
        String text =
            statement(u"Al abrir el consejo de {} no sale {}: su número ({}) es el final del de {}. ",
                      {section.name, pupil.name, pupil.id, who});
        text += notes == given.end() ? String(u"No se le puede poner ninguna respuesta.")
                                     : u"Al aceptar se borran sus respuestas (" +
                                           decimalText(static_cast<Long>(notes->second)) + u").";
        found
            .add(u"Alumno", pupil.id, std::move(text),
                 u"No acepte el consejo de esa sección. Pida a quien lleva los alumnos que dé a uno de los "
                 u"dos "
                 u"otro número, o que los ponga en secciones distintas.")
            .section = pupil.section;
    }
}

/// Notes by the section and the pupil, those that say something.
std::map<std::pair<Long, Long>, std::vector<const Note*>> answered(Facts& facts)
{
    std::map<std::pair<Long, Long>, std::vector<const Note*>> result;
    for (const Note& note : facts.notes())
        if (note.answer > 0)
            result[{note.section, note.pupil}].push_back(&note);
    return result;
}

void otherSection(Facts& facts, Found& found)
{
    for (const auto& [place, notes] : answered(facts)) {
        const auto [section, id] = place;
        const Pupil* pupil = facts.pupil(id);
        if (pupil == nullptr || pupil->left || pupil->section == section || !facts.looksAt(section) ||
            !has(facts.section(section), Kind::guidance))
            continue;
        const bool stays = has(facts.section(pupil->section), Kind::guidance);
        Finding& one =
            found.add(notesTable, notes.front()->key,
                      statement(u"{} lo de {} ({}), que ahora {}.",
                                {acceptDeletes(facts, section), pupil->name, answersGiven(notes.size()),
                                 pupil->section == 0 ? String(u"no está en ninguna sección")
                                                     : u"está en " + facts.section(pupil->section).name}),
                      stays ? u"Páselas a su sección antes de que nadie acepte ese consejo."
                            : u"Si todavía hacen falta, apúntelas antes de que nadie acepte ese consejo.");
        one.section = section;
        if (!stays)
            continue;
        std::vector<Long> keys;
        for (const Note& note : facts.notes())
            if (note.pupil == id && note.section == section)
                keys.push_back(note.key);
        one.repair = [keys, to = pupil->section](Connection& centro) {
            for (const Long key : keys)
                centro.Execute(statement(
                    u"UPDATE ConsejoOrientador_Nota SET codSeccion={} WHERE IDCORNota={}", {to, key}));
        };
    }
}

void gone(Facts& facts, Found& found)
{
    for (const auto& [place, notes] : answered(facts)) {
        const auto [section, id] = place;
        const Pupil* pupil = facts.pupil(id);
        if (pupil == nullptr || !pupil->left || !facts.looksAt(section) ||
            !has(facts.section(section), Kind::guidance))
            continue;
        found
            .add(notesTable, notes.front()->key,
                 statement(u"{} lo de {} ({}), que está de baja.",
                           {acceptDeletes(facts, section), pupil->name, answersGiven(notes.size())}),
                 u"Si todavía hace falta, apúntelo antes de que nadie acepte ese consejo.")
            .section = section;
    }
}

void orphans(Facts& facts, Found& found)
{
    if (facts.onlySection() != 0)
        return;
    std::map<std::pair<Long, Long>, std::vector<const Note*>> byPlace;
    for (const Note& note : facts.notes())
        if (facts.pupil(note.pupil) == nullptr)
            byPlace[{note.pupil, note.section}].push_back(&note);
    for (const auto& [place, notes] : byPlace) {
        const auto [id, section] = place;
        const String& name = facts.section(section).name;
        String where;
        String until = u" ni las borra";
        String remedy = u"restáurelo";
        if (has(facts.section(section), Kind::guidance)) {
            until = u", y se borran cuando alguien acepte el consejo de " + name +
                    (listsSomebody(facts, section) ? u"" : u", en cuanto esa sección tenga algún alumno");
            remedy += u" antes";
        } else {
            where = section == 0 ? String(u", sin sección") : u", puestas en " + name;
        }
        found.add(
            notesTable, notes.front()->key,
            statement(
                u"Del alumno número {}, que ya no está, quedan respuestas del consejo orientador ({}){}: "
                u"ninguna ventana las muestra{}.",
                {id, static_cast<Long>(notes.size()), where, until}),
            u"Si el alumno se borró por error, " + remedy + u"; si no, no hace falta hacer nada.");
    }
}

void incomplete(Facts& facts, Found& found)
{
    for (const auto& [id, notes] : listedNotes(facts)) {
        std::set<Long> asked;
        for (const Note* note : notes)
            asked.insert(note->question);
        std::vector<Long> missing;
        std::vector<String> names;
        for (Long question = 1; question <= questions; ++question)
            if (!asked.contains(question)) {
                missing.push_back(question);
                names.push_back(questionName(facts, question));
            }
        if (missing.empty())
            continue;
        const Pupil& pupil = *facts.pupil(id);
        Finding& one =
            found.add(notesTable, notes.front()->key,
                      statement(u"En el consejo de {}, a {} le falta la fila de {}: ahí se ve lo del alumno "
                                u"anterior, y lo que se elija no se guarda.",
                                {facts.section(pupil.section).name, pupil.name, listed(names)}),
                      u"Añada las filas que faltan, sin respuesta, y elíjala después.");
        one.section = pupil.section;
        one.repair = [missing, id = id, section = pupil.section](Connection& centro) {
            for (const Long question : missing) {
                const RecordsetPtr rows =
                    centro.Execute(u"SELECT MAX(IDCORNota) AS Maximo FROM ConsejoOrientador_Nota");
                const Long next = rows->Eof() ? 1 : longIn(rows->row().front()) + 1;
                centro.Execute(statement(u"INSERT INTO ConsejoOrientador_Nota VALUES ({},{},{},0,{})",
                                         {next, id, section, question}));
            }
        };
    }
}

/// The answers that notes of one question give, each once.
std::set<Long> answersOf(const std::vector<const Note*>& notes)
{
    std::set<Long> given;
    for (const Note* note : notes)
        if (note->answer > 0)
            given.insert(note->answer);
    return given;
}

/// Leaves one, that which says something if any does.
std::function<void(Connection&)> withoutTheOthers(const std::vector<const Note*>& same)
{
    const auto kept = std::ranges::max_element(same, {}, [](const Note* note) { return note->answer > 0; });
    std::vector<Long> keys;
    keys.reserve(same.size());
    for (const Note* note : same)
        if (note != *kept)
            keys.push_back(note->key);
    return [keys](Connection& centro) {
        for (const Long key : keys)
            centro.Execute(statement(u"DELETE FROM ConsejoOrientador_Nota WHERE IDCORNota={}", {key}));
    };
}

void addDouble(Facts& facts, Found& found, const Pupil& pupil, const std::vector<const Note*>& same)
{
    const std::set<Long> given = answersOf(same);
    std::vector<String> words;
    words.reserve(given.size());
    for (const Long answer : given)
        words.push_back(named(facts.answers(), answer));
    Finding& one = found.add(
        notesTable, same.front()->key,
        statement(u"En el consejo de {}, {} tiene {} {} veces{}: se ve una, y al aceptar se guarda en todas.",
                  {facts.section(pupil.section).name, pupil.name, questionName(facts, same.front()->question),
                   static_cast<Long>(same.size()), given.empty() ? String() : u", con " + listed(words)}),
        given.size() > 1 ? u"Apunte cuál vale, abra el consejo, elíjala y acepte; después se puede quitar la "
                           u"fila que sobra."
                         : u"Quite la fila que sobra: no dice nada que no diga la otra.");
    one.section = pupil.section;
    if (given.size() <= 1)
        one.repair = withoutTheOthers(same);
}

void doubled(Facts& facts, Found& found)
{
    for (const auto& [id, notes] : listedNotes(facts)) {
        std::map<Long, std::vector<const Note*>> byQuestion;
        for (const Note* note : notes)
            byQuestion[note->question].push_back(note);
        for (const auto& [question, same] : byQuestion)
            if (same.size() > 1)
                addDouble(facts, found, *facts.pupil(id), same);
    }
}

void moved(Facts& facts, Found& found)
{
    for (const auto& [id, notes] : listedNotes(facts))
        for (const Note* note : notes) {
            const auto answer = facts.answers().find(note->answer);
            if (note->answer <= 0 || answer == facts.answers().end() ||
                answer->second.question == note->question)
                continue;
            const Pupil& pupil = *facts.pupil(id);
            found
                .add(notesTable, note->key,
                     statement(
                         u"Al abrir el consejo de {} no se verá la respuesta {} que {} tiene en {}: ahora "
                         u"es de {}. Al aceptar la pierde.",
                         {facts.section(pupil.section).name, inQuotes(answer->second.text), pupil.name,
                          questionName(facts, note->question), questionName(facts, answer->second.question)}),
                     u"Devuelva la respuesta a su pregunta, en «Respuestas del consejo orientador», antes de "
                     u"que nadie acepte ese consejo; para la otra pregunta cree una nueva.")
                .section = pupil.section;
        }
}

void deleted(Facts& facts, Found& found)
{
    for (const auto& [id, notes] : listedNotes(facts))
        for (const Note* note : notes) {
            if (note->answer <= 0 || facts.answers().contains(note->answer))
                continue;
            const auto& bin = facts.names(answersTable, u"IDCOResp", u"Descripcion", Database::borrado);
            const auto kept = bin.find(note->answer);
            const bool isKept = kept != bin.end() && !kept->second.empty();
            const Pupil& pupil = *facts.pupil(id);
            found
                .add(notesTable, note->key,
                     statement(
                         u"Al abrir el consejo de {} no se verá la respuesta {} que {} tiene en {}: se ha "
                         u"eliminado. Al aceptar la pierde.",
                         {facts.section(pupil.section).name,
                          isKept ? inQuotes(kept->second) : u"número " + decimalText(note->answer),
                          pupil.name, questionName(facts, note->question)}),
                     isKept ? u"Restáurela de la papelera antes de que nadie acepte ese consejo."
                            : u"Elíjale otra.")
                .section = pupil.section;
        }
}

bool isNumber(Long question) { return question >= 1 && question <= questions; }

/// Each question and each answer goes into a control of its number.
void badQuestions(Facts& facts, Found& found)
{
    constexpr StringView nowhere = u"El consejo orientador no se puede abrir en ninguna sección";
    for (const auto& [question, name] : questionNames(facts))
        if (!isNumber(question))
            found.add(u"ConsejoOrientador", question,
                      statement(u"{}: la pregunta {} lleva el número {}, y sólo hay sitio para ocho.",
                                {Value(nowhere), inQuotes(name), question}),
                      u"Pida a quien lleva la base de datos que la quite.");
    std::map<Long, Long> count;
    for (const auto& [key, answer] : facts.answers()) {
        ++count[answer.question];
        if (isNumber(answer.question) && !answer.missing)
            continue;
        const String why = answer.missing
                               ? statement(u"la respuesta número {} no tiene texto", {key})
                               : statement(u"la respuesta {} es de la pregunta {}, y sólo hay ocho",
                                           {inQuotes(answer.text), answer.question});
        found.add(answersTable, key, statement(u"{}: {}.", {Value(nowhere), why}),
                  u"Ábrala en «Respuestas del consejo orientador», dele su pregunta y su texto, y acepte.");
    }
    for (const auto& [question, answers] : count)
        if (answers > mostAnswers)
            found.add(
                answersTable, question,
                statement(u"{} tiene {} respuestas, y en la ventana caben {}: el consejo no se puede abrir "
                          u"con los alumnos que ya la tienen contestada.",
                          {questionName(facts, question), answers, mostAnswers}),
                u"Elimine las que no use nadie.");
}

/// What ends the dialog with a failure before it is shown.
void unopenable(Facts& facts, Found& found)
{
    badQuestions(facts, found);
    for (const Pupil& pupil : facts.pupils())
        if (isListed(facts, pupil) && offers(Kind::guidance, facts.section(pupil.section)) &&
            pupil.id > largestPupil)
            found
                .add(u"Alumno", pupil.id,
                     statement(u"El consejo de {} no se puede abrir: el número de {} ({}) pasa de {}.",
                               {facts.section(pupil.section).name, pupil.name, pupil.id, largestPupil}),
                     u"Pida a quien lleva los alumnos que le dé un número menor.")
                .section = pupil.section;
    for (const auto& [id, notes] : listedNotes(facts))
        for (const Note* note : notes) {
            if (!note->broken && isNumber(note->question))
                continue;
            const Pupil& pupil = *facts.pupil(id);
            found
                .add(notesTable, note->key,
                     statement(u"El consejo de {} no se puede abrir: una fila de {} no dice la sección, la "
                               u"respuesta o una de las ocho preguntas.",
                               {facts.section(pupil.section).name, pupil.name}),
                     statement(u"Pida a quien lleva la base de datos que corrija la fila {} de {}.",
                               {note->key, Value(notesTable)}))
                .section = pupil.section;
        }
}

void blank(Facts& facts, Found& found)
{
    for (const Pupil& pupil : facts.pupils())
        if (pupil.blank && isListed(facts, pupil) && offers(Kind::guidance, facts.section(pupil.section)))
            found
                .add(u"Alumno", pupil.id,
                     statement(u"En el consejo de {}, {} sale en blanco en la lista de alumnos: le falta un "
                               u"apellido o el nombre, ni siquiera vacío.",
                               {facts.section(pupil.section).name, pupil.name}),
                     u"Pida a quien lleva los alumnos que se lo ponga, o que lo deje vacío.")
                .section = pupil.section;
}

constexpr Rule rules[] = {
    {u"consejo-no-abre", Area::guidance, false, unopenable},
    {u"consejo-oculto", Area::guidance, false, hidden},
    {u"consejo-otra-seccion", Area::guidance, false, otherSection},
    {u"consejo-baja", Area::guidance, false, gone},
    {u"consejo-huerfano", Area::guidance, false, orphans},
    {u"consejo-incompleto", Area::guidance, false, incomplete},
    {u"consejo-repetido", Area::guidance, false, doubled},
    {u"consejo-respuesta-movida", Area::guidance, false, moved},
    {u"consejo-respuesta-eliminada", Area::guidance, false, deleted},
    {u"consejo-en-blanco", Area::guidance, false, blank},
};

} // namespace

std::span<const Rule> guidanceRules() { return rules; }

} // namespace zv::care
