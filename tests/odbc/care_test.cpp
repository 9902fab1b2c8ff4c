#include "care/copies/Copies.h"
#include "care/copies/Move.h"
#include "care/rules/Rules.h"

#include "data/NumberOf.h"
#include "data/Schema.h"
#include "data/Schools.h"
#include "data/Statement.h"
#include "data/odbc/OdbcEngine.h"
#include "data/sqlite/SqliteEngine.h"
#include "estaciones/Stations.h"
#include "odbc/Moving.h"
#include "robot/OddTexts.h"
#include "runtime/Convert.h"
#include "suite/Sample.h"
#include "suite/sodium/EncryptoApi.h"

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <thread>

using namespace zv;

namespace {

/// Value for a column, of every kind that the schema has.
Value chance(const schema::Column& column, std::mt19937& numbers, const std::vector<String>& texts)
{
    const String& text = texts[numbers() % texts.size()];
    if (numbers() % 6 == 0)
        return Null();
    if (column.type == schema::Type::text)
        return column.width > 0 ? text.substr(0, static_cast<std::size_t>(column.width) / 2) : text;
    if (column.type == schema::Type::decimal)
        return (static_cast<Double>(numbers()) - 2e9) / 3.0;
    return column.type == schema::Type::longInteger ? static_cast<Long>(numbers())
                                                    : static_cast<Long>(numbers() % 256);
}

/// A few rows in every table of all three databases; what an engine refuses (half a character, the same key)
/// is left out.
void fillByChance(School& school, std::uint32_t seed)
{
    std::mt19937 numbers(seed);
    const std::vector<String> texts = oddTexts();
    for (const auto& [which, base] : {std::pair(Database::centro, school.centro),
                                      {Database::borrado, school.borrado},
                                      {Database::entrada, school.entrada}})
        for (const schema::Table& table : schema::tables(which))
            for (std::uint32_t row = 0; row < numbers() % 5; ++row) {
                String values;
                for (const schema::Column& column : table.columns()) {
                    const bool key = &column < table.columns().data() + table.keyColumns;
                    Value value = chance(column, numbers, texts);
                    if (key && value.isNull())
                        value = column.type == schema::Type::text ? Value(u"x") : Value(Long{1});
                    values += (values.empty() ? u"" : u",") + literal(value);
                }
                numberOf([&, into = base] {
                    into->executeNative(u"INSERT INTO " + String(table.name) + u" VALUES (" + values + u")");
                });
            }
}

/// Stations that write a row into the live database and then its twin into that of deleted records, without
/// pause.
class Writers {
public:
    Writers(const String& url, int count)
    {
        for (int station = 0; station < count; ++station)
            threads_.emplace_back([this, url, station] {
                const School school = openSchool(url);
                for (Long row = 1; !ended_; ++row) {
                    const Long key = (station + 1) * 1000000 + row;
                    for (const ConnectionPtr& base : {school.centro, school.borrado})
                        base->Execute(
                            statement(u"INSERT INTO profesion (IDProfesion,nombre) VALUES ({},'x')", {key}));
                    ++returned;
                    usleep(static_cast<useconds_t>(times(2000, 100000)));
                }
            });
    }
    Writers(const Writers&) = delete;
    Writers& operator=(const Writers&) = delete;
    ~Writers()
    {
        ended_ = true;
        for (std::thread& each : threads_)
            each.join();
    }
    std::atomic<Long> returned = 0;

private:
    std::atomic<bool> ended_ = false;
    std::vector<std::thread> threads_;
};

} // namespace

TEST_P(MovingToServer, a_school_of_any_content_comes_back_from_a_server_as_it_went)
{
    for (std::uint32_t seed = 0; seed <= static_cast<std::uint32_t>(times(isMaria() ? 1 : 3, 20)); ++seed) {
        SCOPED_TRACE(seed);
        const String number = decimalText(static_cast<Long>(seed));
        const String one = file(u"uno" + number), two = file(u"dos" + number);
        createSchool(one, [&](School& to) { seed == 0 ? fillSample(to) : fillByChance(to, seed); });
        care::moveSchool(one, server());
        EXPECT_EQ(care::differences(contentsAt(one), contentsAt(server())), std::vector<String>());
        // By the other server, where that one has been already.
        const String between =
            u"odbc:DSN=zv_prueba;ESQUEMA=mudanza_entre" + decimalText(static_cast<Long>(getpid()));
        if (isMaria())
            care::moveSchool(server(), between);
        care::moveSchool(isMaria() ? between : server(), two);
        EXPECT_EQ(care::differences(contentsAt(one), contentsAt(two)), std::vector<String>());
        remove(server());
        remove(between);
    }
}

TEST_P(MovingToServer, one_that_stops_leaves_the_first_as_it_was_and_the_second_nowhere)
{
    const String one = file(u"uno.db");
    createSchool(one, fillSample);
    const auto before = contentsAt(one);
    for (const String& to : {file(u"dos.db"), server()})
        for (const int last : {0, 40, 100}) {
            int tables = 0;
            EXPECT_ANY_THROW(care::moveSchool(one, to, [&](StringView, Long) {
                if (tables++ == last)
                    throw std::runtime_error("stopped");
            }));
            EXPECT_ANY_THROW(inspectSchool(to));
        }
    EXPECT_EQ(care::differences(before, contentsAt(one)), std::vector<String>());
    // What would be lost is refused and named; what differs is found.
    openSchool(one).centro->executeNative(u"CREATE TABLE Ajena (x INTEGER)");
    EXPECT_NE(numberOf([&] { care::moveSchool(one, file(u"dos.db")); }, u"Ajena"), 0);
    openSchool(one).centro->executeNative(u"DROP TABLE Ajena");
    for (const auto& [spoil, mend, word] :
         {std::tuple(u"CREATE VIEW Ajena AS SELECT 1", u"DROP VIEW Ajena", u"una vista"),
          {u"CREATE TRIGGER Ajeno AFTER DELETE ON Pais BEGIN SELECT 1; END", u"DROP TRIGGER Ajeno",
           u"un disparador"},
          {u"CREATE INDEX Ajeno ON Pais (Descripcion)", u"DROP INDEX Ajeno", u"un índice"},
          {u"INSERT INTO Pais (IDPais,Descripcion) VALUES (9999,CAST(x'FF41' AS TEXT))",
           u"DELETE FROM Pais WHERE IDPais=9999", u"tabla Pais de la base del centro no se puede copiar"}}) {
        openSchool(one).centro->executeNative(spoil);
        EXPECT_NE(numberOf([&] { care::moveSchool(one, file(u"dos.db")); }, word), 0);
        openSchool(one).centro->executeNative(mend);
    }
    for (const StringView change :
         {u"UPDATE Pais SET Descripcion=Descripcion||' ' WHERE IDPais=1",
          u"UPDATE Pais SET Descripcion=NULL WHERE IDPais=1", u"DELETE FROM Pais WHERE IDPais=1"}) {
        openSchool(one).centro->executeNative(change);
        EXPECT_EQ(care::differences(before, contentsAt(one)).size(), 1U);
    }
}

TEST_P(MovingToServer, copies_while_stations_write_are_whole_and_of_one_instant)
{
    for (const String& url : places()) {
        createSchool(url, fillSample);
        const std::filesystem::path copy = folder / "una.zvcopia";
        const int stations = times(4, 8), copies = times(brief(4, 2), 1000);
        for (Long done = 0; done < copies;) {
            // What the stations write grows, and each copy with it: now and then they begin anew.
            for (const School school = openSchool(url);
                 const ConnectionPtr& base : {school.centro, school.borrado})
                base->Execute(u"DELETE FROM profesion");
            Writers writers(url, stations);
            do {
                const Long before = writers.returned;
                EXPECT_GT(care::takeCopy(url, copy, "clave", "frase").rows, 8000);
                const String back = file(u"vuelta" + String(engineOf(url).scheme()));
                EXPECT_EQ(care::restoreCopy(copy, back), u"");
                const School school = openSchool(back);
                EXPECT_GE(rowsOf(school.borrado), before);
                EXPECT_GE(rowsOf(school.centro), rowsOf(school.borrado));
                EXPECT_LE(rowsOf(school.centro), rowsOf(school.borrado) + stations);
                std::filesystem::remove(copy);
                remove(back);
            } while (++done % 40 != 0 && done < copies);
        }
        care::takeCopy(url, copy, "clave", "frase");
        EXPECT_EQ(care::keyIn(copy, "frase"), "clave");
        EXPECT_EQ(care::keyIn(copy, "otra"), std::nullopt);
        // The school's, whoever asks and whichever servers are listed, and of no other schema.
        EXPECT_EQ(care::isOf(copy, url + u";ESPERA=120;SERVIDORES=uno,dos"), url.starts_with(u"odbc:"));
        EXPECT_FALSE(care::isOf(copy, url + u"x")) << toUtf8(url);
        // Over a school that is there: it is kept, and what the copy has is there.
        openSchool(url).centro->Execute(u"DELETE FROM profesion");
        const auto emptied = contentsAt(url);
        const String kept = care::restoreCopy(copy, url);
        EXPECT_EQ(care::differences(contentsAt(kept), emptied), std::vector<String>());
        EXPECT_GT(rowsOf(openSchool(url).centro), 0);
        remove(kept);
        std::filesystem::remove(copy);
    }
}

TEST_F(Moving, a_copy_that_changed_is_refused)
{
    const String one = file(u"uno.db");
    const std::filesystem::path copy = folder / "una.zvcopia";
    createSchool(one, fillSample);
    care::takeCopy(one, copy, "", "");
    const auto size = std::filesystem::file_size(copy);
    std::mt19937 numbers(7);
    for (int trial = 0; trial < 60; ++trial) {
        std::fstream bytes(copy, std::ios::binary | std::ios::in | std::ios::out);
        const auto place = static_cast<std::streamoff>(trial < 30 ? numbers() % 700 : numbers() % size);
        const int was = bytes.seekg(place).get();
        bytes.seekp(place).put(static_cast<char>(was ^ (1 << numbers() % 8))).flush();
        EXPECT_ANY_THROW(care::restoreCopy(copy, file(u"dos.db"))) << place;
        bytes.seekp(place).put(static_cast<char>(was));
    }
    std::filesystem::resize_file(copy, size - 1);
    EXPECT_ANY_THROW(care::checkCopy(copy));
}

TEST_P(MovingToServer, a_restore_that_is_killed_leaves_the_old_or_the_new)
{
    std::mt19937 numbers(seedOr(7));
    for (const String& url : places()) {
        const std::filesystem::path copy = folder / "una.zvcopia";
        createSchool(url, fillSample);
        care::takeCopy(url, copy, "", "");
        const auto copied = contentsAt(url);
        int killed = 0, restored = 0;
        std::chrono::microseconds took{};
        for (int trial = 0; trial <= deaths(brief(7, 3), 200); ++trial) {
            openSchool(url).centro->Execute(u"DELETE FROM profesion");
            const auto before = contentsAt(url);
            const pid_t station = fork();
            if (station == 0) {
                try {
                    care::restoreCopy(copy, url);
                } catch (const std::exception& error) {
                    std::cerr << error.what() << '\n';
                }
                _exit(0);
            }
            // The first one is not killed: the moments of the others lie within its time.
            if (trial > 0) {
                usleep(static_cast<useconds_t>(numbers() % static_cast<std::uint32_t>(took.count())));
                kill(station, SIGKILL);
            }
            const auto begun = std::chrono::steady_clock::now();
            int status = 0;
            waitpid(station, &status, 0);
            killed += wasKilled(status) ? 1 : 0;
            if (trial == 0)
                took = std::chrono::duration_cast<std::chrono::microseconds>(
                    std::chrono::steady_clock::now() - begun);
            openSchool(url);
            // A server carries the dead one's last statement to its end, while the tables are read one by
            // one.
            auto after = contentsAt(url);
            for (auto again = contentsAt(url); !(again == after); again = contentsAt(url))
                after = std::move(again);
            EXPECT_TRUE(after == before || care::differences(after, copied).empty()) << trial;
            restored += after == before ? 0 : 1;
            for (const auto& each : std::filesystem::directory_iterator(folder))
                if (const std::string name = each.path().filename();
                    name.starts_with("uno.") && name.find("antes") != std::string::npos)
                    std::filesystem::remove(each);
        }
        std::cout << killed << " killed, " << restored << " restored before\n";
        EXPECT_GT(killed, 0);
        remove(url);
        std::filesystem::remove(copy);
    }
}

/// The same statements on a server: a fault of each of the four areas, and a repair.
TEST_P(MovingToServer, what_dialogs_will_do_to_rows_is_told_on_a_server_too)
{
    const School school = createSchool(server(), fillSample), there = openSchool(server());
    const auto told = [&] {
        std::set<String> rules;
        const care::Survey found =
            care::survey(there, {.decipher = [](StringView text) { return String(text); }});
        for (const care::Finding& each : found.findings)
            rules.emplace(each.rule);
        EXPECT_TRUE(found.skipped.empty());
        return rules;
    };
    EXPECT_EQ(told(), std::set<String>());
    for (const StringView each :
         {u"UPDATE ConsejoOrientador_Nota SET codCOResp=5 WHERE IDCORNota=1",
          u"DELETE FROM ConsejoOrientador_Nota WHERE codAlumno=359 AND codConsejoOrientador>6",
          u"DELETE FROM Alumno_InfInd WHERE CodAlumno=304",
          u"UPDATE Alumno_InfIndPrim SET codResp=1 WHERE CodAlumno=50 AND codMateria=1 AND codTipo=2",
          u"UPDATE Banco SET Numero='0049' WHERE IDBanco=3",
          u"UPDATE Emisor SET CIF='B28999880' WHERE IDEmisor=2",
          u"UPDATE TipoTarea SET codTipoMiembroCentro=77 WHERE IDTipoTarea=1"})
        there.centro->Execute(each);
    there.borrado->Execute(u"INSERT INTO EstadoCivil VALUES (3,'Prometido')");
    const std::set<String> left{u"consejo-respuesta-movida", u"primaria-respuesta-movida",
                                u"banco-repetido",           u"nif",
                                u"tarea-sin-tipo",           u"papelera"};
    std::set<String> all = left;
    all.insert({u"consejo-incompleto", u"eso-sin-comun"});
    EXPECT_EQ(told(), all);
    EXPECT_EQ(care::survey(there, {.area = care::Area::guidance, .section = 15}).findings.size(), 2U);
    EXPECT_EQ(care::repair(there, care::survey(there).findings).size(), 2U);
    EXPECT_EQ(told(), left);
}

INSTANTIATE_TEST_SUITE_P(each, MovingToServer, testing::Values("postgres", "mariadb"),
                         [](const auto& each) { return each.param; });
