#include "data/odbc/OdbcEngine.h"

#include "data/OneDatabase.h"
#include "data/SchemaCheck.h"
#include "data/Schools.h"
#include "data/odbc/ConnectionText.h"
#include "data/odbc/Failure.h"

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
    odbc::ConnectionText text(u" Driver={a;b}}c} ; UID = ana ;PWD={};x};;ESQUEMA=;dsn=d;DSN=e;suelto");
    EXPECT_EQ(text.find(u"driver"), u"a;b}c");
    EXPECT_EQ(text.find(u"uid"), u"ana");
    EXPECT_EQ(text.find(u"DSN"), u"d");
    EXPECT_EQ(text.take(u"Esquema"), u"");
    EXPECT_EQ(text.find(u"Esquema"), std::nullopt);
    text.set(u"Port", u"5432");
    EXPECT_EQ(text.text(), u"Driver={a;b}}c};UID=ana;PWD=;x}=;dsn=d;DSN=e;suelto=;Port=5432;");
    EXPECT_EQ(text.shown().find(u"PWD"), String::npos);
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
    EXPECT_EQ(number("23505", 0, u"", true), failure::connectionLost);
}

TEST_F(Server, each_failure_has_its_number)
{
    base->Execute(
        u"CREATE TABLE t (k INTEGER NOT NULL PRIMARY KEY, u TEXT UNIQUE, c INTEGER CHECK (c < 10))");
    base->Execute(u"Insert into T values (1,'a',-2)");
    expectNumbers({
        Case{u"Insert into t values (1,'b',3)", failure::keyExists},
        Case{u"Insert into t values (2,'a',3)", failure::brokenConstraint},
        Case{u"Insert into t values (2,'b',10)", failure::brokenConstraint},
        Case{u"Insert into t values ('x','b',3)", failure::brokenConstraint},
        Case{u"Insert into t values (99999999999,'b',3)", failure::brokenConstraint},
        Case{u"Select * from nada", failure::tableMissing},
        Case{u"Select nada from t", failure::columnMissing},
        Case{u"Selec * from t", failure::badStatement},
        Case{u"Insert into t values (7,'7',7); Select 1", failure::badStatement},
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

TEST_F(Server, a_lost_connection_is_told_once)
{
    const RecordsetPtr open = base->Execute(u"Select pg_backend_pid() as i from generate_series(1,5000)");
    const String its = CStr(open->Fields(u"i"));
    const ConnectionPtr other = engine->temporary(place, Database::borrado);
    const String own = all(u"Select pg_backend_pid()");
    for (const RecordsetPtr ended =
             other->Execute(u"Select pg_terminate_backend(" + own + u"), pg_terminate_backend(" + its + u")");
         !ended->Eof();)
        ended->MoveNext();
    EXPECT_EQ(numberOf([&] { base->Execute(u"CREATE TABLE t (a INTEGER)"); }), failure::connectionLost);
    EXPECT_EQ(CStr(open->Fields(u"i")), its);
    open->Close();
    EXPECT_EQ(base->Execute(u"CREATE TABLE t (a INTEGER)")->State(), 0);
    EXPECT_EQ(all(u"Select count(*) from t"), u"0 ");
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
    const String tooLong = u"DSN=zv_prueba;ESQUEMA=" + String(60, u'x');
    EXPECT_EQ(numberOf([&] { engine->create(tooLong, Database::borrado); }, u"demasiado largo"),
              failure::otherData);
}
