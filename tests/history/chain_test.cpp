#include "history/Chronicle.h"

#include "runtime/OwnerOnly.h"

#include <cstdlib>
#include <fstream>
#include <random>
#include <set>
#include <sstream>
#include <sys/wait.h>

namespace zv {
namespace {

class Chain : public Chronicle {
protected:
    /// A history with entries of every kind but the erasing one.
    Chain()
    {
        for (int i = 1; i <= 6; ++i)
            dialog(u"frmPais", u"Ana",
                   {statement(u"INSERT INTO Pais (IDPais,Descripcion) VALUES ({},'Perú {}')",
                              {Long{i}, Long{i}}),
                    statement(u"UPDATE Pais SET Descripcion='Chile' WHERE IDPais={}", {Long{i}}),
                    u"UPDATE Pais SET Descripcion='Cuba' WHERE IDPais=99",
                    u"INSERT INTO Pais (IDPais,Descripcion) VALUES (1,'Otro')",
                    u"SELECT * FROM Enfermedad WHERE IDEnfermedad=4",
                    u"INSERT INTO Provincia SELECT IDPais,Descripcion FROM Pais WHERE IDPais>90",
                    u"INSERT INTO Banco (IDBanco,Numero) VALUES (7,'2100')",
                    u"DELETE FROM Banco WHERE IDBanco=7",
                    statement(u"DELETE FROM Pais WHERE IDPais={} AND IDPais>1", {Long{i}})});
    }
    /// All that the chain protects, as one text.
    String all() const
    {
        String result;
        for (const RecordsetPtr rows = raw(u"SELECT json_array(Numero, Momento, Clase, Apertura, Guardado, "
                                           u"Tabla, Fila, Antes, Despues, "
                                           u"Sal, Huella, Enlace) FROM HistorialAsiento UNION ALL SELECT "
                                           u"json_array(Numero, Enlace) FROM "
                                           u"HistorialCabeza");
             !rows->Eof(); rows->MoveNext())
            result += CStr(rows->row().front());
        return result;
    }
};

/// Ways to tamper; each gives the statements, or none where it would change nothing.
using Statements = std::vector<String>;

class Forger {
public:
    Forger(Connection& centro, std::uint32_t seed) : centro_(centro), chance_(seed) {}

    Statements tamper()
    {
        switch (below(6)) {
        case 0:
            return {statement(u"DELETE FROM HistorialAsiento WHERE Numero={}", {some()})};
        case 1:
            return inserted();
        case 2:
            return swapped();
        case 3:
            return head();
        case 4:
            return {
                statement(u"UPDATE HistorialAsiento SET Antes=NULL, Despues=NULL, Sal=NULL WHERE Numero={} "
                          u"AND Despues IS NOT NULL",
                          {some()})};
        default:
            return edited();
        }
    }

private:
    Long below(Long end) { return static_cast<Long>(chance_() % static_cast<std::uint32_t>(end)); }
    Long newest() { return history::headOf(centro_).number; }
    Long some() { return below(newest()) + 1; }

    Statements edited()
    {
        constexpr StringView numbers[] = {u"Numero", u"Clase", u"Apertura", u"Guardado"};
        constexpr StringView texts[] = {u"Momento", u"Tabla", u"Fila",   u"Antes",
                                        u"Despues", u"Sal",   u"Huella", u"Enlace"};
        const Long column = below(12);
        const String name(column < 4 ? numbers[column] : texts[column - 4]);
        constexpr StringView changes[] = {u"'X'||IFNULL({},'')", u"IFNULL({},'')||'x'",
                                          u"IFNULL(lower({}),'')||' '"};
        const String value = column < 4
                                 ? name + u"+" + literal(Long{below(2) == 0 ? 1 + below(5) : -1 - below(5)})
                                 : statement(changes[below(3)], {name});
        return {u"UPDATE HistorialAsiento SET " + name + u"=" + value +
                statement(u" WHERE Numero={}", {some()})};
    }
    Statements inserted()
    {
        const Long from = some();
        const Long to = some();
        // What follows is pushed on.
        Statements result;
        for (Long each = newest(); each >= to; --each)
            result.push_back(
                statement(u"UPDATE HistorialAsiento SET Numero=Numero+1 WHERE Numero={}", {each}));
        result.push_back(statement(u"INSERT INTO HistorialAsiento SELECT {}, Momento, Clase, Apertura, "
                                   u"Guardado, Tabla, Fila, Antes, Despues, Sal, Huella, Enlace FROM "
                                   u"HistorialAsiento WHERE Numero={}+1 OR Numero={}-1 LIMIT 1",
                                   {to, from, from}));
        return result;
    }
    Statements swapped()
    {
        const Long one = some();
        const Long other = one % newest() + 1;
        return {statement(u"UPDATE HistorialAsiento SET Numero=-1 WHERE Numero={}", {one}),
                statement(u"UPDATE HistorialAsiento SET Numero={} WHERE Numero={}", {one, other}),
                statement(u"UPDATE HistorialAsiento SET Numero={} WHERE Numero=-1", {other})};
    }
    Statements head()
    {
        constexpr StringView ways[] = {u"UPDATE HistorialCabeza SET Numero=Numero+1",
                                       u"UPDATE HistorialCabeza SET Numero=Numero-1",
                                       u"UPDATE HistorialCabeza SET Enlace='x'||Enlace",
                                       u"DELETE FROM HistorialAsiento WHERE Numero={}"};
        const Long way = below(4);
        return {way < 3 ? String(ways[way]) : statement(ways[way], {newest()})};
    }

    Connection& centro_;
    std::mt19937 chance_;
};

TEST_F(Chain, shows_any_tampering_and_nothing_else)
{
    const history::Verification clean = verified();
    ASSERT_EQ(findings(), "");
    ASSERT_GT(clean.entries, 60);
    std::set<history::Kind> kinds;
    for (const history::Entry& each : history::entries(*school.centro, u""))
        kinds.insert(each.kind);
    EXPECT_EQ(kinds.size(), 9U);
    Forger forger(*school.centro, 1);
    int tampered = 0;
    for (int i = 0; i < 1000; ++i) {
        raw(u"BEGIN");
        const String before = all();
        const Statements statements = forger.tamper();
        for (const String& each : statements)
            numberOf([&] { raw(each); });
        if (all() != before) {
            ++tampered;
            EXPECT_GT(verified().defects, 0) << toUtf8(statements.back());
        }
        raw(u"ROLLBACK");
    }
    EXPECT_GT(tampered, 900);
    EXPECT_EQ(findings(), "");
}

/// Who owns the file can cut the newest off and set the head back: a head noted elsewhere shows it.
TEST_F(Chain, noted_head_shows_that_the_newest_were_cut_off)
{
    const history::Head noted = history::headOf(*school.centro);
    dialog(u"frmPais", u"Luis", {u"INSERT INTO Pais (IDPais,Descripcion) VALUES (50,'Malta')"});
    EXPECT_EQ(history::verify(*school.centro, noted).defects, 0);
    const Long keep = noted.number - 2;
    raw(statement(u"DELETE FROM HistorialAsiento WHERE Numero>{}", {keep}));
    raw(statement(u"UPDATE HistorialCabeza SET Numero={}, Enlace=(SELECT Enlace FROM HistorialAsiento WHERE "
                  u"Numero={})",
                  {keep, keep}));
    EXPECT_EQ(verified().defects, 0);
    const history::Verification result = history::verify(*school.centro, noted);
    ASSERT_EQ(result.findings.size(), 1U);
    EXPECT_EQ(result.findings.front().number, noted.number);
    // What no engine of ours wrote is a finding, and no failure.
    raw(u"UPDATE HistorialAsiento SET Clase=x'00' WHERE Numero=3");
    EXPECT_GT(verified().defects, 0);
    raw(u"DROP TABLE HistorialAsiento");
    EXPECT_EQ(numberOf([&] { verified(); }), failure::tableMissing);
}

TEST_F(Chain, commands_say_by_their_exit_code_what_they_found)
{
    const std::string base = " --bd sqlite:" + (folder / "colegio.db").string();
    const std::string file = (folder / "todo.jsonl").string();
    const history::Head head = history::headOf(*school.centro);
    const std::string noted = std::to_string(head.number) + ":" + toUtf8(head.link);
    const auto exitCode = [&](const std::string& words) {
        const std::string line =
            "'" ZVCONF "' historial " + words + base + " >'" + (folder / "out").string() + "' 2>&1";
        return WEXITSTATUS(std::system(line.c_str()));
    };
    const auto said = [&] {
        std::ostringstream text;
        text << std::ifstream(folder / "out").rdbuf();
        return text.str();
    };
    struct Case {
        std::string words;
        int code;
        std::string answer;
    };
    const Case cases[] = {
        {"comprobar --cabeza " + noted, 0, "Cabeza: " + noted},
        {"comprobar --cabeza 3:x", 1, "Asiento 3: no es el que se anotó"},
        {"comprobar --cabeza 3", 2, "NÚMERO:ENLACE"},
        {"exportar " + file, 0, "Cabeza: " + noted},
        {"exportar --sin-nombres " + file, 2, "existe ya"},
        {"olvidar", 2, "--alumno N o --fila TABLA N"},
        {"olvidar --fila Nada 3", 2, "no es una tabla"},
        {"olvidar --fila Pais 3", 0, "se olvidarían: 3"},
        {"olvidar --fila Pais 3 --si", 0, "olvidados: 3"},
        {"olvidar --fila Pais 3", 0, "se olvidarían: 0"},
        {"plazo", 0, "Plazo: ninguno"},
        {"plazo 12 --si", 0, "olvidados: 0"},
        {"plazo", 0, "Plazo: 12 meses"},
        {"comprobar --cabeza " + noted, 0, "está como se escribió"},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(exitCode(each.words), each.code) << each.words << '\n' << said();
        EXPECT_NE(said().find(each.answer), std::string::npos) << each.words << '\n' << said();
    }
    EXPECT_FALSE(owneronly::openToOthers(file));
    raw(u"DROP TABLE HistorialCabeza");
    EXPECT_EQ(exitCode("activar"), 0) << said();
    EXPECT_EQ(exitCode("comprobar --cabeza " + noted), 0) << said();
    raw(u"DROP TABLE HistorialAsiento");
    EXPECT_EQ(exitCode("activar"), 0) << said();
    EXPECT_EQ(exitCode("comprobar"), 1) << said();
    raw(u"DROP TABLE HistorialAsiento");
    raw(u"DROP TABLE HistorialCabeza");
    for (const char* each : {"comprobar", "ver"}) {
        EXPECT_EQ(exitCode(each), 2);
        EXPECT_NE(said().find("zvconf historial activar"), std::string::npos) << each;
    }
}

} // namespace
} // namespace zv
