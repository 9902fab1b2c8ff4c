#include "data/OneDatabase.h"
#include "data/SchemaCheck.h"
#include "data/Schools.h"
#include "data/odbc/OdbcEngine.h"

#include <thread>
#include <unistd.h>

using namespace zv;

namespace {

/// A MariaDB of the tests' own, by a user with the rights that a school's has.
class Maria : public OneDatabase {
protected:
    static constexpr StringView place = u"DSN=zv_maria";
    Maria() : OneDatabase(odbcEngine(), place) { registerEngine(odbcEngine()); }
    String one(StringView statement) const { return CStr(base->Execute(statement)->row().front()); }
    /// Ends its links from elsewhere.
    void end(const String& link) const
    {
        other->Execute(u"KILL " + link);
        usleep(100'000);
    }
    ConnectionPtr other = engine->temporary(place, Database::borrado);
};

} // namespace

TEST_F(Maria, each_failure_has_its_number)
{
    base->Execute(u"CREATE TABLE T (k INTEGER NOT NULL PRIMARY KEY, u VARCHAR(9) UNIQUE, c INTEGER NOT NULL "
                  u"CHECK (c < 10))");
    expectTheCommonNumbers();
    expectNumbers({
        Case{u"Insert into t values (2,'b',Null)", failure::brokenConstraint},
        Case{u"Insert into t (k) values (2)", failure::brokenConstraint},
        Case{u"Insert into t values ('','b',3)", failure::brokenConstraint},
        Case{u"Insert into t values (99999999999,'b',3)", failure::brokenConstraint},
        Case{u"Insert into t values (2,'0123456789',3)", failure::brokenConstraint},
        Case{u"Insert into t values (1/0,'b',3)", failure::brokenConstraint},
        Case{u"Insert into t values (2,'b')", failure::badStatement},
        Case{u"Select 'a\xD800'", failure::otherData},
        Case{u"CREATE USER nadie", failure::otherData},
        Case{u"CREATE DATABASE de_otro", failure::otherData},
        Case{u"SIGNAL SQLSTATE '45000'", failure::brokenConstraint},
        Case{u"Delete * From T", 0},
    });
    expectTheKeyAloneIsTaken();
}

TEST_F(Maria, names_are_of_any_case_and_texts_compare_to_the_letter)
{
    base->Execute(u"CREATE TABLE Nombre (IDNombre INTEGER PRIMARY KEY, Texto TEXT, \"Mayor\" VARCHAR(9))");
    for (const StringView each :
         {u"(1,'b ','Ñ')", u"(2,'B','')", u"(3,'a',Null)", u"(4,'á','n')", u"(5,'b','\U0001F600')"})
        base->Execute(u"INSERT INTO NOMBRE VALUES " + String(each));
    EXPECT_EQ(all(u"Select N.idnombre From nombre n Order by n.TEXTO"), u"2 3 5 1 4 ");
    EXPECT_EQ(all(u"Select IDNombre From Nombre Where Texto='b'"), u"5 ");
    EXPECT_EQ(all(u"Select IDNombre From Nombre Where Mayor=''"), u"2 ");
    EXPECT_EQ(all(u"Select \"Mayor\" From Nombre Where IDNombre IN (1,5)"), u"Ñ \U0001F600 ");
    EXPECT_EQ(all(u"Select IDNombre From Nombre Where Mayor Is Null"), u"3 ");
    EXPECT_EQ(
        CStr(
            base->Execute(u"Select Texto+'\\{?};--#' As Suma From NOMBRE Where idNOMBRE=1")->Fields(u"suma")),
        u"b \\{?};--#");
    // What is too long by blanks alone is refused, as anything that is too long; one that just fits is kept.
    Long next = 0;
    School school = temporarySchool(u"odbc:" + String(place));
    const String fits(50, u'x'), rest(60, u' ');
    for (const auto& [text, number] : {std::pair(fits.substr(1) + u" ", 0),
                                       {fits + u" ", failure::brokenConstraint},
                                       {fits + rest, failure::brokenConstraint},
                                       {String(50, u'ñ'), 0}})
        EXPECT_EQ(numberOf([&, &text = text] {
                      school.centro->Execute(u"Insert into pais values (" + decimalText(++next) + u",'" +
                                             text + u"')");
                  }),
                  number);
    EXPECT_TRUE(checkSchool(school, engineOf(u"odbc:")).empty());
    for (const StringView each : {u"DROP TABLE RegistroActivo", u"DROP INDEX ix_Alumno_fechabaja ON Alumno"})
        school.centro->executeNative(each);
    const Lacks lacks = lacksOf(school, engineOf(u"odbc:"));
    ASSERT_TRUE(lacks.history && lacks.registrations && lacks.indexes.size() == 1);
    for (const Lack& each : {*lacks.registrations, lacks.indexes.front()})
        school.centro->executeNative(each.statement);
    EXPECT_TRUE(lacksOf(school, engineOf(u"odbc:")).indexes.empty());
    EXPECT_TRUE(checkAccess(school, engineOf(u"odbc:")).empty());
    for (const StringView each : {u"", u"IDPersonal,", u""})
        school.centro->Execute(u"Insert into Personal (" + String(each) + u"CodEstadoCivil) values (" +
                               (each.empty() ? u"" : u"7,") + u"3)");
    EXPECT_EQ(CLng(school.centro->Execute(u"Select MAX(IDPersonal) as m from Personal")->Fields(u"m")), 8);
}

TEST_F(Maria, tables_and_views_are_found_and_nothing_else) { expectTablesAreFound(); }

TEST_F(Maria, values_have_their_kinds_and_a_list_that_is_read_keeps_nobody_from_writing)
{
    const String longest(70000, u'ñ');
    const std::vector<Value> row =
        base->Execute(u"SELECT 2147483647, 2147483648, CAST(0.5 AS DOUBLE), '', Null, 'a' + Null, '" +
                      longest + u"', count(*), 1.7976931348623157e308, Current_timestamp")
            ->row();
    EXPECT_EQ(*row[0].as<Long>(), 2147483647);
    EXPECT_EQ(*row[1].as<Double>(), 2147483648.0);
    EXPECT_EQ(*row[2].as<Double>(), 0.5);
    EXPECT_EQ(*row[3].as<String>(), u"");
    EXPECT_TRUE(row[4].isNull() && row[5].isNull());
    EXPECT_TRUE(*row[6].as<String>() == longest);
    EXPECT_EQ(*row[7].as<Long>(), 1);
    EXPECT_EQ(*row[8].as<Double>(), 1.7976931348623157e308);
    EXPECT_EQ(row[9].as<String>()->size(), 19U);
    base->Execute(u"CREATE TABLE t (a INTEGER)");
    base->executeNative(u"CREATE TABLE u AS SELECT seq AS i, REPEAT('x',60) AS x FROM seq_1_to_10000");
    const RecordsetPtr rows = base->Execute(u"Select i, x from u");
    base->Execute(u"Insert into t values (5)");
    EXPECT_EQ(all(u"Select a from t"), u"5 ");
    rows->MoveNext();
    EXPECT_EQ(CLng(rows->Fields(u"I")), 2);
    rows->MoveFirst();
    Long seen = 0;
    for (; !rows->Eof(); rows->MoveNext())
        seen += CLng(rows->Fields(u"i")) > 0;
    EXPECT_EQ(seen, 10000);
}

TEST_F(Maria, links_that_end_and_locks_are_told_apart_and_a_deadlock_is_repeated)
{
    base->Execute(u"CREATE TABLE t (a INTEGER)");
    end(one(u"Select CONNECTION_ID()"));
    EXPECT_EQ(numberOf([&] { base->Execute(u"Insert into t values (1)"); }), 0);
    EXPECT_EQ(numberOf([&] { base->Execute(u"KILL " + one(u"Select CONNECTION_ID()")); }),
              failure::connectionLost);
    base->Execute(u"Insert into t values (2)");
    base->executeNative(u"BEGIN");
    base->Execute(u"Insert into t values (3)");
    end(one(u"Select CONNECTION_ID()"));
    EXPECT_EQ(numberOf([&] { base->Execute(u"Insert into t values (4)"); }), failure::connectionLost);
    base->Execute(u"ROLLBACK");
    EXPECT_EQ(all(u"Select a from t"), u"1 2 ");
    // A row that another holds, past the wait of the server; what lasts too long; a deadlock.
    const ConnectionPtr impatient =
        engine->open(u"DSN=zv_maria;ESPERA=1;ESQUEMA=" + one(u"Select DATABASE()"), Database::centro);
    EXPECT_EQ(numberOf([&] { impatient->Execute(u"Select SLEEP(3) from t"); }), failure::locked);
    base->executeNative(u"BEGIN");
    base->Execute(u"Update t set a=7 where a=1");
    const ConnectionPtr second =
        engine->open(u"DSN=zv_maria;ESQUEMA=" + one(u"Select DATABASE()"), Database::centro);
    EXPECT_EQ(numberOf([&] { second->Execute(u"Update t set a=8"); }), failure::locked);
    base->executeNative(u"ROLLBACK");
    EXPECT_EQ(all(u"Select a from t"), u"1 2 ");
    // Of two that wait for each other the server takes back the one that wrote less: a statement is repeated,
    // of a transaction nothing is there, what follows in it included.
    for (const bool inTransaction : {false, true}) {
        base->executeNative(u"Delete from t");
        base->executeNative(u"Insert into t values (1),(2)");
        base->executeNative(u"BEGIN");
        base->executeNative(u"Insert into t Select 100+seq From seq_1_to_50");
        base->Execute(u"Update t set a=20 where a=2");
        if (inTransaction)
            second->executeNative(u"BEGIN");
        std::int32_t number = -1;
        std::thread waiting(
            [&] { number = numberOf([&] { second->Execute(u"Update t set a=a+1 where a<100"); }); });
        usleep(300'000);
        base->Execute(u"Update t set a=10 where a=1");
        base->executeNative(u"COMMIT");
        waiting.join();
        EXPECT_EQ(number, inTransaction ? failure::locked : 0);
        if (inTransaction) {
            EXPECT_EQ(numberOf([&] { second->Execute(u"Insert into t values (50)"); }), failure::locked);
            EXPECT_EQ(numberOf([&] { second->executeNative(u"COMMIT"); }), failure::locked);
        }
        EXPECT_EQ(all(u"Select a from t where a<100"), inTransaction ? u"10 20 " : u"11 21 ");
    }
    EXPECT_EQ(numberOf([&] { second->Execute(u"Insert into t values (50)"); }), 0);
}

TEST_F(Maria, who_may_not_make_a_school_is_told_what_to_ask_for)
{
    const auto words = [&](StringView location, StringView part) {
        return numberOf([&] { createSchool(u"odbc:" + String(location), [](School&) {}); }, part);
    };
    EXPECT_NE(words(u"DSN=zv_maria;UID=ajeno;ESQUEMA=centro", u"GRANT ALL PRIVILEGES sobre `zv\\_%`.*"), 0);
    EXPECT_NE(words(u"DSN=zv_maria;ESQUEMA=de_otro", u"GRANT ALL PRIVILEGES"), 0);
    EXPECT_NE(words(u"DSN=zv_maria;SERVIDORES=127.0.0.1:1", u"quite SOCKET"), 0)
        << "it is reached without its list";
    EXPECT_NE(numberOf([&] { engine->open(u"DSN=zv_maria;ESQUEMA=centro_nada", Database::centro); },
                       u"no tiene el esquema «centro_nada»"),
              0);
    EXPECT_NE(numberOf([&] { engine->open(u"DSN=zv_maria;ESQUEMA=de_otro", Database::centro); },
                       u"no deja a este usuario ver el esquema"),
              0);
    EXPECT_NE(
        numberOf([&] { engine->create(u"DSN=zv_maria;ESQUEMA=" + String(60, u'x'), Database::borrado); },
                 u"demasiado largo"),
        0);
    // A database that is not there yet, named as a data source names it; one that is there and empty; and
    // then a school.
    const String url = u"odbc:DSN=zv_maria;DATABASE=centro_Nuevo";
    base->executeNative(u"CREATE DATABASE \"centro_Nuevo_borrado\"");
    createSchool(url);
    EXPECT_EQ(words(locationOf(url), u"ya tiene el esquema «centro_Nuevo»"), failure::otherData);
    openSchool(url).centro->Execute(u"Insert into PAIS values (1,'x')");
    for (const Database which : everyDatabase)
        engine->remove(locationOf(url), which);
    EXPECT_NE(numberOf([&] { openSchool(url); }), 0);
}
