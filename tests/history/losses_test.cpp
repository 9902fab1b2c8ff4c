#include "Times.h"
#include "data/Schools.h"
#include "data/Statement.h"
#include "data/history/HistoryEngine.h"
#include "data/history/Losses.h"
#include "data/sqlite/SqliteEngine.h"
#include "history/Tables.h"
#include "module/Module.h"
#include "robot/FreshSchool.h"
#include "robot/Guion.h"
#include "robot/Play.h"
#include "robot/ScriptedStage.h"
#include "runtime/Convert.h"

#include <gmock/gmock.h>

#include <deque>
#include <filesystem>
#include <fstream>
#include <random>

namespace zv::history {
namespace {

/// Dialog of a section: which statements it saves with, and which fields they write.
enum class Kind { advice, secondary, primary };
using FieldName = std::pair<String, String>; ///< The row, with its table, and the column.
using State = std::map<FieldName, String>;   ///< Values as literals.

struct Step {
    std::vector<String> statements; ///< Other stations do not come between these.
    State writes;
};

constexpr Long pupils = 4;
constexpr Long questions = 8;
constexpr Long subjects = 2;
constexpr Long types = 5;
const std::vector<String> common{u"Dificultad", u"Valoracion", u"Apreciacion"};
const std::vector<String> secondary{u"Alumno1", u"Alumno2", u"Procedimiento1", u"Actitud2"};

String rowOf(StringView table, Long pupil) { return String(table) + statement(u" CodAlumno={}", {pupil}); }
FieldName ratingOf(Long pupil, Long subject, Long type)
{
    return {
        statement(u"Alumno_InfIndPrim CodAlumno={} AND codMateria={} AND codTipo={}", {pupil, subject, type}),
        u"codResp"};
}
FieldName answerIn(Long note)
{
    return {statement(u"ConsejoOrientador_Nota IDCORNota={}", {note}), u"codCOResp"};
}
bool empty(const String& literal) { return literal == u"''" || literal == u"0" || literal == u"NULL"; }

Step textsOf(StringView table, Long pupil, const std::vector<String>& columns, const State& typed)
{
    Step step;
    String sets;
    const String row = rowOf(table, pupil);
    for (const String& each : columns) {
        sets += (sets.empty() ? u"" : u",") + each + u"=" + typed.at({row, each});
        step.writes[{row, each}] = typed.at({row, each});
    }
    step.statements = {statement(u"UPDATE {} SET {} WHERE Codalumno={}", {Value(table), Value(sets), pupil})};
    return step;
}

/// The ratings of a pupil go and come anew.
Step ratingsOf(Long pupil, const State& typed)
{
    Step step{{statement(u"DELETE FROM Alumno_InfIndPrim WHERE Codalumno={}", {pupil})}, {}};
    for (Long subject = 1; subject <= subjects; ++subject)
        for (Long type = 1; type <= types; ++type) {
            const FieldName field = ratingOf(pupil, subject, type);
            const String& answer = step.writes[field] = typed.at(field);
            step.statements.push_back(statement(u"INSERT INTO Alumno_InfIndPrim VALUES ({},{},{},{})",
                                                {pupil, subject, type, Value(answer)}));
        }
    return step;
}

std::deque<Step> saveOf(Kind kind, const State& typed)
{
    std::deque<Step> steps;
    for (Long pupil = 1; pupil <= pupils; ++pupil) {
        if (kind == Kind::advice) {
            for (Long note = (pupil - 1) * questions + 1; note <= pupil * questions; ++note) {
                const String& answer = typed.at(answerIn(note));
                steps.push_back(
                    {{statement(u"UPDATE ConsejoOrientador_Nota SET codCOResp={} WHERE IDCORNota={}",
                                {Value(answer), note})},
                     {{answerIn(note), answer}}});
            }
            continue;
        }
        steps.push_back(textsOf(u"Alumno_InfInd", pupil, common, typed));
        steps.push_back(kind == Kind::secondary ? textsOf(u"Alumno_InfIndESO", pupil, secondary, typed)
                                                : ratingsOf(pupil, typed));
    }
    return steps;
}

/// Oracle: what stands in each field, who wrote it last, and when.
struct Written {
    String value;
    int by = 0;
    int when = 0;
};
using Model = std::map<FieldName, Written>;

/// A tutor with a section's dialog open, at a station of his own.
struct Tutor {
    HistoryConnection connection;
    int user;
    Kind kind = Kind::advice;
    int opened = 0;
    State typed;
    std::deque<Step> save;
    std::map<FieldName, std::pair<String, int>> lost; ///< The oracle's: what was, and whose.

    Tutor(const ConnectionPtr& centro, int number) : connection(centro, columnNames), user(number) {}

    void open(Kind what, const Model& model, int now)
    {
        kind = what;
        opened = now;
        typed.clear();
        lost.clear();
        for (const auto& [field, written] : model)
            typed[field] = written.value;
        connection.dialogOpened({.dialog = u"frm", .user = static_cast<Integer>(user)});
    }
    void write(Model& model, int now)
    {
        const Step step = save.front();
        save.pop_front();
        for (const String& each : step.statements)
            connection.Execute(each);
        for (const auto& [field, value] : step.writes) {
            Written& written = model.at(field);
            if (written.value == value)
                continue;
            if (written.by != user && written.when > opened && !empty(written.value))
                lost[field] = {written.value, written.by};
            written = {value, user, now};
        }
    }
    std::map<FieldName, std::pair<String, int>> found()
    {
        std::map<FieldName, std::pair<String, int>> result;
        connection.dialogClosed();
        for (const Loss& loss : lossesOf(connection, *connection.takeClosed()))
            for (const Field& each : loss.was)
                result[{loss.table + u" " + loss.row, each.column}] = {literal(each.value),
                                                                       loss.author.opening.user};
        return result;
    }
};

/// A section with all rows there, and everything in them empty.
Model sectionIn(Connection& centro)
{
    Model model;
    State empty;
    for (Long pupil = 1; pupil <= pupils; ++pupil) {
        for (const String& each : common)
            empty[{rowOf(u"Alumno_InfInd", pupil), each}] = u"''";
        for (const String& each : secondary)
            empty[{rowOf(u"Alumno_InfIndESO", pupil), each}] = u"''";
        for (Long subject = 1; subject <= subjects; ++subject)
            for (Long type = 1; type <= types; ++type)
                empty[ratingOf(pupil, subject, type)] = u"0";
        std::vector<String> rows = ratingsOf(pupil, empty).statements;
        rows.insert(
            rows.end(),
            {statement(u"INSERT INTO Alumno (IDAlumno,codseccion) VALUES ({},7)", {pupil}),
             statement(u"INSERT INTO Alumno_InfInd VALUES ({},'','','')", {pupil}),
             statement(u"INSERT INTO Alumno_InfIndESO VALUES ({},'','','','','','','','','','','','')",
                       {pupil})});
        for (Long question = 1; question <= questions; ++question) {
            const Long note = (pupil - 1) * questions + question;
            empty[answerIn(note)] = u"0";
            rows.push_back(statement(u"INSERT INTO ConsejoOrientador_Nota VALUES ({},{},7,0,{})",
                                     {note, pupil, question}));
        }
        for (const String& each : rows)
            centro.Execute(each);
    }
    for (const auto& [field, value] : empty)
        model[field] = {value, 0, 0};
    return model;
}

TEST(Losses, of_two_tutors_over_one_section_each_field_written_over_is_named_and_no_other)
{
    registerEngine(sqliteEngine());
    const School school = temporarySchool();
    activate(*school.centro);
    Model model = sectionIn(*school.centro);
    std::mt19937 dice(7);
    const auto below = [&](std::size_t limit) { return static_cast<std::size_t>(dice()) % limit; };
    std::size_t named = 0;
    int now = 0;
    constexpr int pairs = brief(1000, 100);
    for (int pair = 0; pair < pairs; ++pair) {
        // One of the dialogs for both, most of the time: only then they can meet.
        const Kind first = static_cast<Kind>(below(3));
        const Kind second = below(5) == 0 ? static_cast<Kind>(below(3)) : first;
        Tutor one(school.centro, 1);
        Tutor other(school.centro, 2);
        one.open(first, model, now);
        other.open(second, model, now);
        for (Tutor* each : {&one, &other}) {
            for (std::size_t edits = 1 + below(12); edits > 0; --edits) {
                auto place = std::next(each->typed.begin(), static_cast<long>(below(each->typed.size())));
                const bool text = place->first.first.starts_with(u"Alumno_InfInd ") ||
                                  place->first.first.starts_with(u"Alumno_InfIndESO");
                const std::size_t choice = below(4);
                place->second = text
                                    ? (choice == 0 ? String(u"''") : u"'t" + decimalText(Long(choice)) + u"'")
                                    : decimalText(static_cast<Long>(choice));
            }
            each->save = saveOf(each->kind, each->typed);
        }
        // Statement by statement, or one after the other.
        const bool mixed = below(2) == 0;
        while (!one.save.empty() || !other.save.empty()) {
            Tutor& next = one.save.empty()     ? other
                          : other.save.empty() ? one
                          : !mixed             ? (pair % 2 == 0 ? one : other)
                          : below(2) == 0      ? one
                                               : other;
            next.write(model, ++now);
        }
        for (Tutor* each : {&one, &other}) {
            const auto found = each->found();
            EXPECT_EQ(found, each->lost) << pair;
            named += found.size();
        }
    }
    // A test in which nothing happens would prove nothing.
    EXPECT_GT(named, pairs / 2U);
}

/// Listener that asks after each dialog, as a host does.
struct Asking final : ConnectionDecorator {
    using ConnectionDecorator::ConnectionDecorator;
    std::string lost;
    void dialogClosed() override
    {
        inner()->dialogClosed();
        if (const auto closed = historyOf(inner())->takeClosed())
            for (const Loss& each : lossesOf(*inner(), *closed))
                lost += " " + std::to_string(static_cast<int>(each.kind)) + toUtf8(each.table);
    }
};

/// What the dialogs lose by themselves is known: those guiones are there to show it. All others lose nothing.
TEST(Losses, of_all_guiones_only_those_that_show_a_loss_have_one)
{
    registerEngine(sqliteEngine());
    registerEngine(historyEngine());
    installModule();
    std::map<std::string, std::string> found;
    for (const auto& each : std::filesystem::recursive_directory_iterator(GUIONES)) {
        if (each.path().extension() != ".guion")
            continue;
        std::ifstream file(each.path());
        const Guion guion = readGuion(std::string(std::istreambuf_iterator<char>(file), {}));
        const FreshSchool fresh(u"historial:sqlite:", false);
        School school = fresh.school();
        const auto asking = std::make_shared<Asking>(school.centro);
        school.centro = asking;
        Play(guion, school, scriptedStage).run();
        if (!asking->lost.empty())
            found[each.path().stem().string()] = asking->lost;
    }
    const std::map<std::string, std::string> known{
        {"a_rating_goes_to_the_pupil_being_left",
         " 3Alumno_InfIndPrim 3Alumno_InfIndPrim 3Alumno_InfIndPrim"},
        {"a_row_that_cannot_be_read_opens_empty", " 2EstadoCivil"},
        {"an_answer_belongs_to_a_question_and_may_move", " 2TipoRespInfInd"},
        {"fifteen_texts_are_kept_for_each_pupil", " 2Alumno_InfIndESO 4Alumno_InfIndESO"},
        {"guidance_is_written_for_the_whole_section", " 3ConsejoOrientador_Nota"},
        {"the_submitter_opens_the_bank_and_gets_its_session_back", " 1Presentador"},
        {"tipoiva_takes_percentages_once", " 2TipoIva"},
    };
    EXPECT_EQ(found, known);
}

} // namespace
} // namespace zv::history
