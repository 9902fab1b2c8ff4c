#include "data/odbc/OdbcEngine.h"

#include "data/ConnectionText.h"
#include "data/OneDatabase.h"
#include "data/SchemaCheck.h"
#include "data/SchoolPlace.h"
#include "data/Schools.h"
#include "data/odbc/Failure.h"
#include "data/odbc/Location.h"
#include "data/odbc/Password.h"
#include "data/odbc/Servers.h"

#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <thread>

using namespace zv;

namespace {

/// A PostgreSQL of the tests' own.
class Server : public OneDatabase {
protected:
    static constexpr StringView place = u"DSN=zv_prueba";
    Server() : OneDatabase(odbcEngine(), place) {}
};

} // namespace

TEST(ConnectionText, is_parted_as_the_driver_manager_parts_it)
{
    ConnectionText text(u" Driver={a;b}}c} ; UID = ana ;PWD={};x};;ESQUEMA=;dsn=d;DSN=e;suelto");
    EXPECT_EQ(text.find(u"driver"), u"a;b}c");
    EXPECT_EQ(text.find(u"uid"), u"ana");
    EXPECT_EQ(text.find(u"DSN"), u"d");
    EXPECT_EQ(text.take(u"Esquema"), u"");
    EXPECT_EQ(text.find(u"Esquema"), std::nullopt);
    text.set(u"Port", u"5432");
    EXPECT_EQ(text.text(), u"Driver={a;b}}c};UID=ana;PWD=;x}=;dsn=d;DSN=e;suelto=;Port=5432;");
    EXPECT_EQ(text.shown(), u"odbc:Driver={a;b}}c};UID=ana;dsn=d;DSN=;Port=5432;");
}

TEST(ConnectionText, that_would_have_no_effect_is_refused_and_no_secret_is_shown)
{
    const std::pair<StringView, const char*> cases[] = {
        {u"DSN=d;SERVIDORES=a,b;ESQUEMA=x;ESPERA=9;UID=ana@b;ServerName=c;Service=e;Escape=f", ""},
        {u"DSN=d;SERVIDORES=SECRETO;SECRETO:3306", "algo sin «=» detrás de SERVIDORES"},
        {u"SECRETO", "algo sin «=» al principio"},
        {u"PWD=SECRETO;DSN=d;pwd=SECRETO2", "pwd dos veces"},
        {u"DSN=d;SERVIDORS=ana:SECRETO@b", "escriba SERVIDORES"},
        {u"SERVIDORES={a:1,ana:SECRETO;SECRETO@b};DSN=d", "SERVIDORES=uno:3306"},
        {u"SERVIDORES=http://a", "Sin http://"},
        {u"DSN=d;ESQUEMA={centro}_prueba", "llaves de ESQUEMA"},
        {u"DSN=d;PWD={SECRETO;ESQUEMA=c", "llaves de PWD"},
        {u"DSN=d;ESQUEMA= {c};PWD= {SECRETO;a}}} ;dsn=d", ""},
        {u"DSN=d;SCHEMA=c", "escriba ESQUEMA"},
        {u"DSN=d;DATABSE=c", "escriba DATABASE"},
        {u"DSN=d;SERVIDORES=a;pqopt={connect_timeout=3 hostaddr=1.2.3.4}", "quite HOSTADDR"},
        {u"DSN=d;SERVIDORES=a;HostAddr=1.2.3.4", "quite HOSTADDR"},
    };
    for (const auto& [words, fault] : cases)
        try {
            const ConnectionText text(words);
            text.refuseMistakes();
            const odbc::Servers list(text);
            EXPECT_STREQ(fault, "");
        } catch (const RuntimeError& error) {
            EXPECT_STRNE(fault, "") << error.what();
            EXPECT_THAT(toUtf8(error.description()), testing::HasSubstr(fault));
            EXPECT_THAT(toUtf8(error.description()), testing::Not(testing::HasSubstr("SECRETO")));
        }
}

TEST(SchoolPlace, is_one_in_every_spelling_and_two_on_servers_of_their_own)
{
    const std::tuple<StringView, StringView, bool> cases[] = {
        {u"DSN=d", u"dsn=d;ESQUEMA=;UID=ana;PWD={a;ESQUEMA=b}", true},
        {u"DSN=d", u"ESQUEMA={centro};DSN=d", true},
        {u"DSN=d;DATABASE=c2", u"DSN=d;db={c2}", true},
        {u"DSN=d;DATABASE=c2", u"DSN=d;ESQUEMA=c2", true},
        {u"DSN=d;DATABASE=c2", u"DSN=d;DATABASE=c2;ESQUEMA=centro", true},
        {u"DSN=d;DATABASE=c2;ESQUEMA=c", u"DSN=d;DATABASE=c3;ESQUEMA=c", false},
        {u"DSN=d;DATABASE=c2", u"DSN=d", false},
        {u"DSN=d;SERVIDORES=uno,dos:1", u"DSN=d;SERVIDORES=DOS:1, tres", true},
        {u"DSN=d;SERVIDORES=uno;PORT=5", u"DSN=d;SERVIDORES=uno:5;PORT=5", true},
        {u"DSN=d;SERVIDORES=uno,dos:1", u"DSN=d;SERVIDORES=dos:2,tres", false},
        {u"DSN=d;SERVIDORES=uno", u"DSN=d", true},
    };
    for (const auto& [one, other, same] : cases)
        EXPECT_EQ(isSame(placeIn(one), placeIn(other)), same) << toUtf8(one) << "\n" << toUtf8(other);
}

TEST(Password, comes_from_outside_where_the_text_has_none)
{
    const std::filesystem::path file =
        std::filesystem::temp_directory_path() / ("zv-contrasena-" + std::to_string(getpid()));
    EXPECT_EQ(odbc::passwordFromOutside(), std::nullopt);
    setenv("ZV_CONTRASENA_FICHERO", file.c_str(), 1);
    EXPECT_NE(numberOf(odbc::passwordFromOutside, u"no se puede leer"), 0);
    std::ofstream(file) << "señal;1\r\nmás\n";
    std::filesystem::permissions(file, std::filesystem::perms(0640));
    EXPECT_NE(numberOf(odbc::passwordFromOutside, u"chmod 600"), 0);
    std::filesystem::permissions(file, std::filesystem::perms(0600));
    EXPECT_EQ(odbc::passwordFromOutside(), u"señal;1");
    setenv("ZV_CONTRASENA", "otra", 1);
    EXPECT_EQ(odbc::passwordFromOutside(), u"otra");
    unsetenv("ZV_CONTRASENA");
    std::ofstream(file).flush();
    EXPECT_NE(numberOf(odbc::passwordFromOutside, u"está vacío"), 0);
    std::ofstream(file) << "se\xF1"
                           "al";
    EXPECT_NE(numberOf(odbc::passwordFromOutside, u"no está en UTF-8"), 0);
    unsetenv("ZV_CONTRASENA_FICHERO");
    std::filesystem::remove(file);
}

TEST(Servers, are_tried_as_written_after_the_one_that_served_last)
{
    odbc::Servers servers(ConnectionText(u"DSN=d;SERVIDORES= uno:1, [::1]:2 ,/tres"));
    EXPECT_FALSE(odbc::Servers(ConnectionText(u"DSN=d")).isList());
    String tried;
    const auto find = [&](StringView serving) {
        tried.clear();
        return numberOf(
            [&] {
                servers.find(u"DSN=d;Servername=x;port=9", [&](StringView text) {
                    tried += text;
                    if (text.find(serving) == StringView::npos)
                        throw DataError(failure::connectionLost, "08001/0", u"cerrado", u"");
                });
            },
            u"ninguno de los servidores: ");
    };
    const String one = u"DSN=d;port=1;SERVER=uno;", two = u"DSN=d;port=2;SERVER=::1;",
                 three = u"DSN=d;port=9;SERVER=/tres;";
    for (const auto& [serving, number, order] : {std::tuple(u"::1", 0, one + two),
                                                 {u"::1", 0, two},
                                                 {u"tres", 0, two + one + three},
                                                 {u"nadie", failure::connectionLost, three + one + two},
                                                 {u"uno", 0, three + one}}) {
        EXPECT_EQ(find(serving), number);
        EXPECT_EQ(toUtf8(tried), toUtf8(order));
    }
    for (const auto& [cluster, timeline, latest] :
         {std::tuple(u"a", 2, true), {u"a", 1, false}, {u"a", 3, true}, {u"b", 9, false}})
        EXPECT_EQ(servers.noteTimeline(cluster, timeline), latest);
    EXPECT_EQ(numberOf([&] { servers.find(u"", [](StringView) { fail(failure::locked); }); }),
              failure::locked)
        << "another server would say the same";
    for (const StringView wrong :
         {u"", u"uno,", u"uno:puerto", u":3306", u"uno:", u"uno:65536", u"uno:0", u"{a;b}", u"a b"})
        EXPECT_NE(numberOf([&] { odbc::Servers(ConnectionText(u"SERVIDORES=" + String(wrong))); },
                           u"SERVIDORES=uno:3306"),
                  0)
            << toUtf8(String(wrong));
}

TEST(OdbcFailure, engines_that_share_a_state_are_told_apart)
{
    const auto number = [](const char* state, std::int32_t native, StringView words, bool lost = false) {
        return odbc::failureOf({state, native, String(words)}, lost, u"").number();
    };
    EXPECT_EQ(number("23000", 2627, u""), failure::keyExists);
    EXPECT_EQ(number("23000", 547, u""), failure::brokenConstraint);
    EXPECT_EQ(number("HY000", 19, u"UNIQUE constraint failed: Pais.IDPais (19)"), failure::keyExists);
    EXPECT_EQ(number("HY000", 19, u"UNIQUE constraint failed: Pais.Descripcion (19)"),
              failure::brokenConstraint);
    EXPECT_EQ(number("HY000", 19, u"CHECK constraint failed"), failure::brokenConstraint);
    EXPECT_EQ(number("HY000", 1, u"no such table: x"), failure::tableMissing);
    EXPECT_EQ(number("HY000", 1, u""), failure::badStatement);
    EXPECT_EQ(number("53100", 0, u"disk full"), failure::otherData);
    EXPECT_EQ(number("40001", 1213, u"Deadlock found"), failure::locked);
    EXPECT_EQ(number("08S01", 1047, u"WSREP has not yet prepared node"), failure::connectionLost);
    EXPECT_EQ(number("HY000", 1180, u"(provider status: Not connected to Primary Component)"),
              failure::connectionLost);
    EXPECT_EQ(number("HY000", 1180, u"Got error 28 during COMMIT"), failure::otherData);
    EXPECT_EQ(number("23505", 0, u"", true), failure::connectionLost);
    for (const auto& [state, words, lasting] :
         {std::tuple("28000", u"Access denied", true),
          {"08001", u"FATAL:  password authentication failed for user \"ana\"", true},
          {"08001", u"FATAL:  la autentificación password falló para el usuario «ana»", true},
          {"08001", u"FATAL:  the database system is starting up", false},
          {"08001", u"Connection refused", false}})
        EXPECT_EQ(odbc::isLasting(odbc::failureOf({state, 0, words}, false, u"")), lasting) << state;
}

TEST_F(Server, each_failure_has_its_number)
{
    base->Execute(
        u"CREATE TABLE t (k INTEGER NOT NULL PRIMARY KEY, u TEXT UNIQUE, c INTEGER CHECK (c < 10))");
    expectTheCommonNumbers();
    expectNumbers({
        Case{u"Insert into t values (99999999999,'b',3)", failure::brokenConstraint},
        Case{u"Select 1/0 from t", failure::brokenConstraint},
        Case{u"Select 'a\xD800'", failure::otherData},
    });
    EXPECT_EQ(all(u"Select K from t"), u"1 ");
    EXPECT_EQ(base->Execute(u"Delete * From t")->State(), 0);
}

TEST_F(Server, a_taken_key_is_told_from_what_else_may_be_there_once)
{
    expectTheKeyAloneIsTaken();
    // Inside a transaction the link answers nothing any more.
    base->Execute(u"CREATE TABLE Idioma (IDIdioma INTEGER PRIMARY KEY, Descripcion VARCHAR(50) UNIQUE)");
    base->Execute(u"Insert into Idioma values (1,'Inglés')");
    base->Execute(u"BEGIN");
    expectNumbers({Case{u"Insert into Idioma values (2,'Inglés')", failure::brokenConstraint}});
    base->Execute(u"ROLLBACK");
    base->Execute(u"CREATE TABLE Turno (IDTurno INTEGER PRIMARY KEY)");
    base->Execute(u"CREATE TABLE Aviso (k INTEGER PRIMARY KEY)");
    base->Execute(u"Insert into Aviso values (1)");
    base->executeNative(u"CREATE FUNCTION avisa() RETURNS trigger LANGUAGE plpgsql AS "
                        u"$$ BEGIN INSERT INTO Aviso VALUES (1); RETURN NEW; END $$");
    base->Execute(u"CREATE TRIGGER g AFTER INSERT ON Turno FOR EACH ROW EXECUTE FUNCTION avisa()");
    expectNumbers({Case{u"Insert into Turno values (2)", failure::brokenConstraint}});
}

TEST_F(Server, rows_stream_and_keep_nobody_from_writing)
{
    base->Execute(u"CREATE TABLE t (a INTEGER)");
    const RecordsetPtr rows = base->Execute(u"Select generate_series(1,100000000) as i");
    rows->MoveNext();
    const RecordsetPtr held = base->Execute(u"Select a, i from t right join generate_series(1,500) i on a=i");
    base->Execute(u"Insert into t values (5)");
    EXPECT_EQ(all(u"Select a from t"), u"5 ");
    EXPECT_EQ(CLng(rows->Fields(u"I")), 2);
    rows->MoveFirst();
    EXPECT_EQ(CLng(rows->Fields(u"i")), 1);
    Long seen = 0;
    for (; !held->Eof(); held->MoveNext())
        seen += held->Fields(u"a").isNull() ? 1 : 1000;
    EXPECT_EQ(seen, 500);
}

TEST_F(Server, a_school_made_here_lacks_nothing_and_one_table_less_is_found)
{
    registerEngine(odbcEngine());
    const String url = u"odbc:" + String(place);
    const School school = temporarySchool(url);
    EXPECT_TRUE(checkSchool(school, engineOf(url)).empty());
    for (const StringView each : {u"DROP TABLE RegistroActivo", u"DROP INDEX ix_alumno_fechabaja"})
        school.centro->executeNative(each);
    const Lacks lacks = lacksOf(school, engineOf(url));
    ASSERT_TRUE(lacks.history && lacks.registrations && lacks.indexes.size() == 1);
    for (const Lack& each : {*lacks.registrations, lacks.indexes.front()})
        school.centro->executeNative(each.statement);
    EXPECT_TRUE(lacksOf(school, engineOf(url)).indexes.empty());
    school.centro->Execute(u"Insert into Personal (CodEstadoCivil) values (3)");
    school.centro->Execute(u"Insert into Personal (IDPersonal,CodEstadoCivil) values (7,3)");
    school.centro->Execute(u"Insert into Personal (CodEstadoCivil) values (3)");
    EXPECT_EQ(CLng(school.centro->Execute(u"Select MAX(IDPersonal) as m from Personal")->Fields(u"m")), 8);
    EXPECT_TRUE(checkAccess(school, engineOf(url)).empty());
    school.centro->Execute(u"ALTER TABLE Idioma RENAME TO \"Idioma\"");
    school.centro->Execute(u"ALTER TABLE TipoOcurrencia ALTER Lectivo TYPE boolean USING Lectivo<>0");
    school.borrado->Execute(u"ALTER TABLE Banco RENAME IDBanco TO \"IDBanco\"");
    const std::vector<String> unreadable = checkAccess(school, engineOf(url));
    ASSERT_EQ(unreadable.size(), 3U);
    EXPECT_EQ(unreadable[0].find(u"Base del centro: la tabla Idioma está"), 0U);
    EXPECT_NE(unreadable[1].find(u"boolean = integer"), String::npos);
    EXPECT_EQ(unreadable[2].find(u"Base de borrados: la tabla Banco está"), 0U);
    school.centro->Execute(u"DROP TABLE Pais");
    EXPECT_EQ(checkSchool(school, engineOf(url)),
              std::vector<String>{u"Base del centro: falta la tabla Pais."});
}

TEST_F(Server, tables_and_views_are_found_and_nothing_else) { expectTablesAreFound(); }

TEST_F(Server, values_have_their_kinds)
{
    const String longest(70000, u'ñ');
    const std::vector<Value> row =
        base->Execute(u"SELECT 2147483647, 2147483648, CAST(0.5 AS FLOAT), '', Null, "
                      u"'a' + Null, '\\{?}ñ' + '''é', '" +
                      longest + u"', count(*)")
            ->row();
    EXPECT_EQ(*row[0].as<Long>(), 2147483647);
    EXPECT_EQ(*row[1].as<Double>(), 2147483648.0);
    EXPECT_EQ(*row[2].as<Double>(), 0.5);
    EXPECT_EQ(*row[3].as<String>(), u"");
    EXPECT_TRUE(row[4].isNull() && row[5].isNull());
    EXPECT_EQ(*row[6].as<String>(), u"\\{?}ñ'é");
    EXPECT_TRUE(*row[7].as<String>() == longest);
    EXPECT_EQ(*row[8].as<Long>(), 1);
}

TEST_F(Server, a_link_that_ended_is_told_once_under_a_statement_and_never_while_it_stood_idle)
{
    base->Execute(u"CREATE TABLE t (a INTEGER)");
    const RecordsetPtr open = base->Execute(u"Select pg_backend_pid() as i from generate_series(1,5000)");
    const String its = CStr(open->Fields(u"i"));
    const ConnectionPtr other = engine->temporary(place, Database::borrado);
    const auto end = [&](Connection& by, const String& which) {
        by.Execute(u"Select pg_terminate_backend(" + which + u",5000)");
    };
    end(*other, all(u"Select pg_backend_pid()"));
    end(*other, its);
    EXPECT_EQ(numberOf([&] { base->Execute(u"Insert into t values (1)"); }), 0);
    EXPECT_EQ(CStr(open->Fields(u"i")), its);
    open->Close();
    EXPECT_EQ(numberOf([&] { end(*base, u"pg_backend_pid()"); }), failure::connectionLost);
    base->Execute(u"Insert into t values (2)");
    EXPECT_EQ(all(u"Select a from t"), u"1 2 ");
    base->executeNative(u"BEGIN");
    base->Execute(u"Insert into t values (3)");
    end(*other, all(u"Select pg_backend_pid()"));
    EXPECT_EQ(numberOf([&] { base->Execute(u"Insert into t values (4)"); }), failure::connectionLost)
        << "half a transaction is not to be written";
    base->Execute(u"ROLLBACK");
    EXPECT_EQ(all(u"Select a from t"), u"1 2 ");
    EXPECT_EQ(numberOf([&] { engine->open(u"DSN=zv_prueba;PWD=oculta;ESQUEMA=nada", Database::centro); },
                       u"no tiene el esquema «nada»"),
              failure::otherData);
    for (const auto& wrong : {std::pair(u"DSN=nadie", u"corrija DSN"),
                              {u"Driver=nadie", u"corrija Driver"},
                              {u"DSN=zv_prueba;Database=nadie", u"no responde"}})
        EXPECT_EQ(numberOf([&] { engine->open(wrong.first, Database::centro); }, wrong.second),
                  failure::connectionLost);
    const String ansi = u"Driver=PostgreSQL ANSI;UID=zv;Database=postgres;Port=5432;Server=" +
                        CStr(base->Execute(u"SHOW unix_socket_directories")->row().front());
    EXPECT_EQ(numberOf([&] { engine->open(ansi, Database::centro); }, u"sin Unicode"), failure::otherData);
    for (const StringView wrong : {u"", u"-1", u"1.5", u"86401"})
        EXPECT_EQ(numberOf([&] { engine->open(u"DSN=zv_prueba;ESPERA=" + String(wrong), Database::centro); },
                           u"ESPERA=N"),
                  failure::otherData);
    const String tooLong = u"DSN=zv_prueba;ESQUEMA=" + String(60, u'x');
    EXPECT_EQ(numberOf([&] { engine->create(tooLong, Database::borrado); }, u"demasiado largo"),
              failure::otherData);
}

TEST_F(Server, a_conflict_is_repeated_a_few_times_where_nothing_was_done_and_is_no_taken_key)
{
    base->Execute(u"CREATE TABLE t (a INTEGER PRIMARY KEY)");
    struct {
        StringView state;
        int conflicts; ///< Before it succeeds.
        bool inTransaction;
        std::int32_t number;
        Long attempts;
    } const cases[] = {{u"40001", 3, false, 0, 4},
                       {u"40P01", 5, false, 0, 6},
                       {u"40001", 99, false, failure::locked, 6},
                       {u"40P01", 1, true, failure::locked, 1},
                       {u"23505", 1, false, failure::keyExists, 1}};
    for (const auto& each : cases) {
        base->executeNative(
            u"DROP SEQUENCE IF EXISTS n; CREATE SEQUENCE n; DELETE FROM t; DROP TRIGGER IF EXISTS g ON t; "
            u"CREATE OR REPLACE FUNCTION choca() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN "
            u"IF nextval('n')<=" +
            decimalText(Long{each.conflicts}) + u" THEN RAISE EXCEPTION '\"t_pkey\"' USING ERRCODE='" +
            String(each.state) +
            u"'; END IF; RETURN NEW; END $$; CREATE TRIGGER g AFTER INSERT ON t FOR EACH ROW "
            u"EXECUTE FUNCTION choca()");
        if (each.inTransaction)
            base->executeNative(u"BEGIN");
        EXPECT_EQ(numberOf([&] { base->Execute(u"Insert into t values (1)"); }), each.number);
        if (each.inTransaction)
            base->executeNative(u"ROLLBACK");
        EXPECT_EQ(all(u"Select a from t"), each.number == 0 ? u"1 " : u"");
        EXPECT_EQ(all(u"Select last_value from n"), decimalText(each.attempts) + u" ");
    }
}

/// The test server is on a local socket, as the last of a list here.
TEST_F(Server, of_a_list_is_found_behind_one_that_is_not_there_and_is_asked_whether_it_takes_changes)
{
    const String list = u"DSN=zv_prueba;SERVIDORES=127.0.0.1:1," +
                        CStr(base->Execute(u"SHOW unix_socket_directories")->row().front()) + u":5432";
    const ConnectionPtr found = engine->temporary(list, Database::borrado);
    found->Execute(u"CREATE TABLE t (a INTEGER)");
    found->Execute(u"Insert into t values (1)");
    EXPECT_EQ(numberOf(
                  [&] {
                      odbcEngine()->temporary(list + u";pqopt={options=-cdefault_transaction_read_only=on}",
                                              Database::borrado);
                  },
                  u"5432: no admite cambios"),
              failure::connectionLost);
    // One that becomes read only is left for the next that is not, outside of a transaction.
    const StringView readOnly = u"SET default_transaction_read_only=on";
    found->Execute(readOnly);
    EXPECT_EQ(numberOf([&] { found->Execute(u"Insert into t values (2)"); }), 0);
    found->Execute(readOnly);
    found->Execute(u"BEGIN");
    EXPECT_NE(numberOf([&] { found->Execute(u"Insert into t values (3)"); }, u"sólo deja leer"), 0);
    EXPECT_NE(numberOf([&] { found->Execute(u"COMMIT"); }), 0);
    EXPECT_EQ(numberOf([&] { found->Execute(u"Insert into t values (4)"); }), 0);
    EXPECT_EQ(CLng(found->Execute(u"Select sum(a) from t")->row().front()), 7);
    base->Execute(readOnly);
    EXPECT_NE(numberOf([&] { base->Execute(u"CREATE TABLE u (a INTEGER)"); }, u"sólo deja leer"), 0);
    base->Execute(u"SET default_transaction_read_only=off");
    EXPECT_EQ(numberOf([&] { engine->temporary(u"DSN=zv_prueba;SERVIDORES=127.0.0.1:1", Database::borrado); },
                       u"127.0.0.1:1: "),
              failure::connectionLost);
}

/// Where its socket cannot be told from others that came at the same moment, an idle link is asked.
TEST_F(Server, a_link_whose_socket_is_not_known_is_asked_whether_it_lives)
{
    std::vector<int> crowd;
    std::atomic<bool> over = false;
    sockaddr_un address{AF_UNIX, {}};
    const std::string path =
        toUtf8(CStr(base->Execute(u"SHOW unix_socket_directories")->row().front())) + "/.s.PGSQL.5432";
    std::ranges::copy(path, address.sun_path);
    std::thread opening([&] {
        while (!over && crowd.size() < 60) {
            crowd.push_back(socket(AF_UNIX, SOCK_STREAM, 0));
            EXPECT_EQ(connect(crowd.back(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });
    const ConnectionPtr unknown = engine->temporary(place, Database::borrado);
    over = true;
    opening.join();
    for (const int each : crowd)
        close(each);
    unknown->Execute(u"CREATE TABLE t (a INTEGER)");
    const String its = CStr(unknown->Execute(u"Select pg_backend_pid()")->row().front());
    base->Execute(u"Select pg_terminate_backend(" + its + u",5000)");
    std::this_thread::sleep_for(std::chrono::milliseconds(1100));
    EXPECT_EQ(numberOf([&] { unknown->Execute(u"Insert into t values (1)"); }), 0);
}

TEST_F(Server, one_that_says_nothing_is_waited_for_as_long_as_agreed)
{
    const ConnectionPtr patient = engine->temporary(String(place) + u";ESPERA=1", Database::borrado);
    const auto seconds = [](const auto& act) {
        const auto begun = std::chrono::steady_clock::now();
        act();
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - begun).count();
    };
    patient->Execute(u"CREATE TABLE t (a INTEGER)");
    const double slow = seconds(
        [&] { EXPECT_EQ(numberOf([&] { patient->Execute(u"Select pg_sleep(4)"); }), failure::locked); });
    EXPECT_LT(slow, 3) << "the server itself ends what takes long";
    const pid_t process = CLng(patient->Execute(u"Select pg_backend_pid()")->row().front());
    kill(process, SIGSTOP);
    const double silent = seconds([&] {
        EXPECT_EQ(numberOf([&] { patient->Execute(u"Insert into t values (1)"); }, u"no contesta"),
                  failure::connectionLost);
    });
    EXPECT_GE(silent, 5.9);
    EXPECT_LT(silent, 9);
    EXPECT_LT(
        seconds([&] { EXPECT_NE(numberOf([&] { patient->Execute(u"Insert into t values (2)"); }), 0); }), 1)
        << "what else a dialog saves does not wait as long again";
    std::this_thread::sleep_for(std::chrono::milliseconds(2100));
    EXPECT_EQ(numberOf([&] { patient->Execute(u"Insert into t values (3)"); }), 0);
    kill(process, SIGCONT);
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    EXPECT_LE(CLng(patient->Execute(u"Select count(*) from t where a=1")->row().front()), 1)
        << "it may have run, and is not sent again";
}
