#include "data/history/Cuts.h"
#include "data/history/HistoryEngine.h"
#include "data/history/Undo.h"
#include "data/history/Words.h"
#include "estaciones/Stations.h"

#include <sstream>

namespace zv {
namespace {

using history::Scope;

constexpr StringView url = u"historial:sqlite:";

/// What was done, what is told when ANA's act is undone, and what the table then holds.
struct Case {
    const char* name;
    const char* acts; ///< A line each, with who does it; without, where the history does not see it.
    const char* told; ///< A line each, or how it begins.
    const char* query;
    const char* left;
    const char* column = "";
};

std::vector<std::string> linesOf(const char* text)
{
    std::vector<std::string> lines;
    std::istringstream all(text);
    for (std::string line; std::getline(all, line);)
        lines.push_back(line);
    return lines;
}

const std::vector<Case>& cases()
{
    constexpr const char* pais = "SELECT IDPais, Descripcion FROM Pais";
    constexpr const char* kind = "SELECT Nombre, Descripcion FROM TipoMotivoBaja";
    constexpr const char* ratings = "SELECT CodAlumno, codResp FROM Alumno_InfIndPrim ORDER BY 1, 2";
    static const std::vector<Case> all = {
        {"nothing stands over it",
         "INSERT INTO Pais VALUES (1,'A')\nANA: UPDATE Pais SET Descripcion='B' WHERE IDPais=1",
         "Pais IDPais=1: Descripcion: «B» -> «A»", pais, "1 A"},
        {"another wrote one of two columns: the other goes back",
         "INSERT INTO TipoMotivoBaja VALUES (1,'n','d')\nANA: UPDATE TipoMotivoBaja SET Nombre='N', "
         "Descripcion='D' WHERE IDTipoMotivoBaja=1\nLUIS: UPDATE TipoMotivoBaja SET Nombre='otro' WHERE "
         "IDTipoMotivoBaja=1",
         "TipoMotivoBaja IDTipoMotivoBaja=1: Descripcion: «D» -> «d»\nTipoMotivoBaja IDTipoMotivoBaja=1, "
         "Nombre: se deja «otro»; lo escribió LUIS en frmPrueba, hoy",
         kind, "otro d"},
        {"one column of two is wanted",
         "INSERT INTO TipoMotivoBaja VALUES (1,'n','d')\nANA: UPDATE TipoMotivoBaja SET Nombre='N', "
         "Descripcion='D' WHERE IDTipoMotivoBaja=1",
         "TipoMotivoBaja IDTipoMotivoBaja=1: Nombre: «N» -> «n»", kind, "n D", "nombre"},
        {"somebody wrote it beside the history",
         "ANA: INSERT INTO Pais VALUES (1,'A')\nUPDATE Pais SET Descripcion='B'",
         "Pais IDPais=1, Descripcion: se deja «B»; lo escribió un programa sin historial.", pais, "1 B"},
        {"the row that was added is gone",
         "ANA: INSERT INTO Pais VALUES (1,'A')\nLUIS: DELETE FROM Pais WHERE IDPais=1",
         "Pais IDPais=1: se deja: la fila ya no está; la quitó LUIS en frmPrueba, hoy", pais, ""},
        {"the row that was changed is gone",
         "INSERT INTO Pais VALUES (1,'A')\nANA: UPDATE Pais SET Descripcion='B' WHERE IDPais=1\nLUIS: DELETE "
         "FROM Pais WHERE IDPais=1",
         "Pais IDPais=1: se deja: la fila ya no está; la quitó LUIS en frmPrueba, hoy", pais, ""},
        {"a removed row comes back",
         "INSERT INTO Pais VALUES (1,'L''A')\nANA: DELETE * FROM Pais WHERE IDPais=1",
         "Pais IDPais=1: la fila vuelve (IDPais: 1; Descripcion: «L'A»)", pais, "1 L'A"},
        {"unless its key is taken",
         "INSERT INTO Pais VALUES (1,'A')\nANA: DELETE FROM Pais WHERE IDPais=1\nLUIS: INSERT INTO Pais "
         "VALUES (1,'Z')",
         "Pais IDPais=1: se deja: hay otra fila con esa clave; la puso LUIS en frmPrueba, hoy", pais, "1 Z"},
        {"of two ratings that are alike one goes",
         "INSERT INTO Alumno_InfIndPrim VALUES (1,2,3,4)\nANA: INSERT INTO Alumno_InfIndPrim VALUES "
         "(1,2,3,4)",
         "Alumno_InfIndPrim CodAlumno=1 AND codMateria=2 AND codTipo=3: la fila se quita\nAlumno_InfIndPrim "
         "CodAlumno=1 AND codMateria=2 AND codTipo=3: la fila se quita\nAlumno_InfIndPrim CodAlumno=1 AND "
         "codMateria=2 AND codTipo=3: la fila vuelve",
         ratings, "1 4"},
        {"two that are alike and one beside them come back",
         "INSERT INTO Alumno_InfIndPrim VALUES (1,2,3,4)\nINSERT INTO Alumno_InfIndPrim VALUES "
         "(1,2,3,4)\nINSERT INTO Alumno_InfIndPrim VALUES (1,2,3,5)\nANA: DELETE FROM Alumno_InfIndPrim "
         "WHERE CodAlumno=1",
         "Alumno_InfIndPrim CodAlumno=1 AND codMateria=2 AND codTipo=3: la fila vuelve\nAlumno_InfIndPrim "
         "CodAlumno=1 AND codMateria=2 AND codTipo=3: la fila vuelve\nAlumno_InfIndPrim CodAlumno=1 AND "
         "codMateria=2 AND codTipo=3: la fila vuelve",
         ratings, "1 4 1 4 1 5"},
        {"of two ratings of a subject one changes",
         "INSERT INTO Alumno_InfIndPrim VALUES (1,2,3,4)\nINSERT INTO Alumno_InfIndPrim VALUES "
         "(1,2,3,1)\nANA: UPDATE Alumno_InfIndPrim SET codResp=2 WHERE codResp=4",
         "Alumno_InfIndPrim CodAlumno=1 AND codMateria=2 AND codTipo=3: la fila se quita\nAlumno_InfIndPrim "
         "CodAlumno=1 AND codMateria=2 AND codTipo=3: la fila vuelve",
         ratings, "1 1 1 4"},
        {"what is enciphered is not shown",
         "INSERT INTO Enfermedad VALUES (1,'AbC=','x')\nANA: UPDATE Enfermedad SET Nombre='dEf=' WHERE "
         "IDEnfermedad=1",
         "Enfermedad IDEnfermedad=1: Nombre: (cifrado) -> (cifrado)", "SELECT Nombre FROM Enfermedad",
         "AbC="},
        {"a statement that nobody understands stays",
         "INSERT INTO Pais VALUES (1,'A')\nANA: UPDATE Pais SET IDPais=2",
         "No se puede deshacer una instrucción que el historial sólo tiene como texto: UPDATE Pais SET "
         "IDPais=2",
         pais, "2 A"},
        {"a number without end comes back",
         "INSERT INTO ponderacion VALUES (1,'p',1e309)\nANA: UPDATE ponderacion SET puntuacion=1",
         "ponderacion IDPonderacion=1: puntuacion: 1 -> 9e999", "SELECT puntuacion>1e300 FROM ponderacion",
         "1"},
        {"texts that were erased do not come back",
         "ANA: INSERT INTO Pais VALUES (1,'A')\nUPDATE HistorialAsiento SET Antes=NULL, Despues=NULL, "
         "Sal=NULL WHERE Clase=2",
         "Pais IDPais=1: no se puede deshacer: lo que había se ha borrado del historial.", pais, "1 A"}};
    return all;
}

struct Undo : testing::Test {
    Undo()
    {
        registerEngine(sqliteEngine());
        registerEngine(historyEngine());
        school = temporarySchool(url);
    }
    history::HistoryConnection& centro() { return *history::historyOf(school.centro); }
    /// Gives the number of the save's first entry.
    Long act(const std::string& act)
    {
        const std::size_t who = act.find(": ");
        if (who == std::string::npos)
            return centro().inner()->Execute(fromUtf8(act)), 0;
        centro().dialogOpened({.dialog = u"frmPrueba", .userName = fromUtf8(act.substr(0, who))});
        centro().Execute(fromUtf8(act.substr(who + 2)));
        centro().dialogClosed();
        return history::entries(centro(), u"Guardado<>0", true).front().save;
    }
    std::string values(const char* query)
    {
        std::string text;
        for (const RecordsetPtr rows = centro().inner()->Execute(fromUtf8(query)); !rows->Eof();
             rows->MoveNext())
            for (const Value& value : rows->row())
                text += (text.empty() ? "" : " ") + toUtf8(CStr(value));
        return text;
    }
    School school;
};

TEST_F(Undo, tells_what_it_does_and_what_stands_over_it_and_is_undone_in_turn)
{
    for (const Case& each : cases()) {
        SCOPED_TRACE(each.name);
        school = temporarySchool(url);
        Long saved = 0;
        for (const std::string& one : linesOf(each.acts))
            if (const Long save = act(one); one.starts_with("ANA"))
                saved = save;
        const std::string before = values(each.query);
        const Scope scope{.save = saved, .column = fromUtf8(each.column)};
        const history::Plan plan = planOf(centro(), scope);
        EXPECT_EQ(values(each.query), before);
        std::vector<std::string> told;
        for (const history::Effect& effect : plan.effects)
            told.push_back(toUtf8(history::told(effect)));
        for (const history::Obstacle& obstacle : plan.obstacles)
            told.push_back(toUtf8(history::told(obstacle, timeHere())));
        std::vector<testing::Matcher<std::string>> expected;
        for (const std::string& line : linesOf(each.told))
            expected.push_back(testing::StartsWith(line));
        EXPECT_THAT(told, testing::ElementsAreArray(expected));
        EXPECT_EQ(undo(centro(), scope, {.userName = u"OTRO"}).effects.size(), plan.effects.size());
        EXPECT_EQ(values(each.query), each.left);
        if (plan.effects.empty())
            continue;
        undo(centro(), {.save = history::entries(centro(), u"Guardado<>0", true).front().save}, {});
        EXPECT_EQ(values(each.query), before);
    }
}

TEST_F(Undo, an_undo_that_fails_leaves_everything_as_it_was)
{
    const Long missed = act("ANA: UPDATE Pais SET Descripcion='B' WHERE IDPais=1");
    act("INSERT INTO Pais VALUES (1,'A')");
    act("INSERT INTO Pais VALUES (2,'B')");
    const Long removed = act("ANA: DELETE FROM Pais");
    act("INSERT INTO Pais VALUES (3,'B')");
    act("CREATE UNIQUE INDEX sola ON Pais (Descripcion)");
    EXPECT_THROW(undo(centro(), {.save = removed}, {.userName = u"OTRO"}), DataError);
    EXPECT_EQ(values("SELECT IDPais FROM Pais"), "3");
    act("DROP INDEX sola");
    EXPECT_EQ(undo(centro(), {.save = removed}, {.userName = u"OTRO"}).effects.size(), 2U);
    EXPECT_EQ(values("SELECT IDPais FROM Pais ORDER BY 1"), "1 2 3");
    EXPECT_EQ(planOf(centro(), {.save = missed}).idle.at(history::Kind::missed), 1);
    for (const char* each : {"DELETE FROM Pais WHERE IDPais=2 RETURNING IDPais",
                             "WITH x AS (SELECT 3 AS n) DELETE FROM Pais WHERE IDPais IN (SELECT n FROM x)"})
        EXPECT_EQ(planOf(centro(), {.save = act(std::string("ANA: ") + each)}).obstacles.size(), 1U) << each;
    act("INSERT INTO Pais WITH RECURSIVE n(i) AS (SELECT 4 UNION ALL SELECT i+1 FROM n WHERE i<2000) "
        "SELECT i, 'A' FROM n");
    const Long many = act("ANA: UPDATE Pais SET Descripcion='B'");
    EXPECT_EQ(undo(centro(), {.save = many}, {.userName = u"OTRO"}).effects.size(), 1998U);
}

/// Database that another station keeps; how often somebody waited for it.
struct Busy final : ConnectionDecorator {
    using ConnectionDecorator::ConnectionDecorator;
    RecordsetPtr executeNative(StringView statement) override
    {
        if (statement != u"BEGIN")
            return inner()->executeNative(statement);
        ++waited;
        throw DataError(failure::locked, "", u"locked", statement);
    }
    int waited = 0;
};

TEST_F(Undo, nobody_waits_twice_for_a_note)
{
    const auto busy = std::make_shared<Busy>(centro().inner());
    history::HistoryConnection patient(busy, [](StringView) { return std::vector<String>{u"IDPais"}; });
    const auto read = [&] { patient.Execute(u"SELECT * FROM Enfermedad"); };
    read();
    read();
    EXPECT_EQ(busy->waited, 1) << "readings";
    patient.dialogOpened({});
    EXPECT_THROW(patient.Execute(u"DELETE FROM Pais"), DataError);
    patient.dialogAtRest();
    read();
    EXPECT_EQ(busy->waited, 3) << "the statement, and before it what was read";
    patient.dialogClosed();
    EXPECT_EQ(busy->waited, 4);
}

TEST_F(Undo, the_last_write_of_a_row_or_of_its_column_is_found_and_a_moment)
{
    act("INSERT INTO TipoMotivoBaja VALUES (1,'n','d')");
    act("ANA: UPDATE TipoMotivoBaja SET Nombre='N' WHERE IDTipoMotivoBaja=1");
    act("ANA: UPDATE TipoMotivoBaja SET Descripcion='D' WHERE IDTipoMotivoBaja=1");
    const auto undoLast = [&](StringView column) {
        const auto scope = history::lastWriteOf(centro(), u"TipoMotivoBaja", u"IDTipoMotivoBaja=1", column);
        undo(centro(), scope.value(), {});
        return values("SELECT Nombre, Descripcion FROM TipoMotivoBaja");
    };
    EXPECT_EQ(undoLast(u"Nombre"), "n D");
    EXPECT_EQ(undoLast(u""), "N D") << "the undo is a write";
    EXPECT_EQ(undoLast(u"Descripcion"), "N d");
    EXPECT_FALSE(history::lastWriteOf(centro(), u"Pais", u"IDPais=1"));
    EXPECT_EQ(history::firstSince(centro(), u"2020-01-01 00:00:00"), 1);
    EXPECT_EQ(history::firstSince(centro(), u"2999-01-01 00:00:00"), 0);
}

TEST(HistoryWords, a_moment_is_told_as_people_do)
{
    setenv("TZ", "Europe/Madrid", 1);
    tzset();
    const Seconds now = *momentIn(u"2024-09-12 08:30:00");
    for (const auto& [moment, told] : {std::pair(u"2024-09-12 07:14:00.125", u"hoy a las 9:14"),
                                       std::pair(u"2024-09-11 23:05:00.000", u"hoy a la 1:05"),
                                       std::pair(u"2024-09-11 21:59:00.000", u"ayer a las 23:59"),
                                       std::pair(u"2024-01-09 09:05:00.000", u"el 9/1/2024 a las 10:05")})
        EXPECT_EQ(toUtf8(history::whenTold(moment, now)), toUtf8(told));
    for (const StringView local : {u"2024-09-12 10:30:00", u"2024-01-12 00:00:00", u"2024-03-31 03:00:00"})
        EXPECT_EQ(toUtf8(localText(*localMomentIn(local))), toUtf8(local));
    EXPECT_EQ(toUtf8(told(history::Cut{.moment = u"2024-09-11 07:14:00.125",
                                       .what = u"del banco 2100",
                                       .units = u"sucursales",
                                       .written = 12},
                          now)),
              "El guardado del banco 2100 de ayer a las 9:14 se cortó: 12 sucursales.");
    unsetenv("TZ");
    tzset();
}

} // namespace
} // namespace zv
