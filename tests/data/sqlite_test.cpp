#include "data/sqlite/SqliteEngine.h"

#include "OneDatabase.h"

using namespace zv;

namespace {

class Memory : public OneDatabase {
protected:
    Memory() : OneDatabase(sqliteEngine(), u"") {}
};

constexpr StringView endless =
    u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n) SELECT i FROM n";

} // namespace

TEST_F(Memory, each_failure_has_its_number)
{
    base->Execute(
        u"CREATE TABLE t (k INTEGER NOT NULL PRIMARY KEY, u TEXT UNIQUE, c INTEGER NOT NULL CHECK (c < 10)) "
        u"STRICT, WITHOUT ROWID");
    expectTheCommonNumbers();
    base->Execute(u"CREATE TABLE r (k INTEGER PRIMARY KEY)");
    base->executeNative(
        u"CREATE TRIGGER g BEFORE DELETE ON t BEGIN SELECT 1; SELECT RAISE(ABORT,'no such table'); END");
    expectNumbers({
        Case{u"Insert into t values (2,'b',Null)", failure::brokenConstraint},
        Case{u"Insert into r values ('x')", failure::brokenConstraint},
        Case{u"Delete * From t", failure::brokenConstraint},
        Case{u"Select \"nada\" from t", failure::columnMissing},
        Case{u"Update t Set nada='x'", failure::columnMissing},
        Case{u"Insert into t (k,nada) values (1,2)", failure::columnMissing},
        Case{u"Insert into t values (1,'a')", failure::badStatement},
        Case{u"Select * from t where k=", failure::badStatement},
        Case{u"Select 'it's' from t", failure::badStatement},
        Case{u"Select nada(k) from t", failure::badStatement},
        Case{u"", failure::badStatement},
        Case{u" -- 'x'", failure::badStatement},
        Case{u"Select abs(-9223372036854775808) from t", failure::otherData},
        Case{u"COMMIT", failure::otherData},
    });
    EXPECT_EQ(numberOf([&] { base->executeNative(u"Select 1; Select * from nada"); }), failure::badStatement);
    EXPECT_EQ(numberOf([&] { base->executeNative(u"Delete * From t"); }), failure::badStatement);
    EXPECT_EQ(all(u"Select K from t"), u"1 ");
    try {
        base->Execute(u"Insert into t values (1,'b',3)");
        FAIL();
    } catch (const DataError& error) {
        EXPECT_EQ(error.engineCode(), "1555");
        EXPECT_EQ(error.engineText(), u"UNIQUE constraint failed: t.k");
        EXPECT_EQ(error.statement(), u"Insert into t values (1,'b',3)");
        EXPECT_EQ(error.description(), u"Ya hay una fila con esa clave. (UNIQUE constraint failed: t.k)");
    }
    base->Execute(u"PRAGMA max_page_count=4");
    EXPECT_EQ(numberOf([&] {
                  base->Execute(u"Insert into r select i from (" + String(endless) + u" LIMIT 99999)");
              }),
              failure::otherData);
}

TEST_F(Memory, a_taken_key_is_told_from_what_else_may_be_there_once)
{
    expectTheKeyAloneIsTaken();
    base->Execute(u"CREATE TABLE Aviso (k INTEGER PRIMARY KEY)");
    base->Execute(u"Insert into Aviso values (1)");
    base->executeNative(u"CREATE TRIGGER g AFTER INSERT ON Pais BEGIN INSERT INTO Aviso VALUES (1); END");
    expectNumbers({Case{u"Insert into Pais (IDPais) values (77)", failure::brokenConstraint}});
}

TEST_F(Memory, rows_stream_and_tell_what_they_lack)
{
    // What has no end can only be read by who reads no more than he is asked for.
    const RecordsetPtr rows = base->Execute(endless);
    for (int i = 1; i < 50; ++i)
        rows->MoveNext();
    EXPECT_EQ(CLng(rows->Fields(u"I")), 50);
    rows->MoveFirst();
    EXPECT_EQ(CLng(get(*rows, u"fields", {Value(u"i")})), 1);
    EXPECT_EQ(numberOf([&] { rows->Fields(u"j"); }), failure::unknownField);
    call(*rows, u"Close");
    EXPECT_EQ(CLng(get(*rows, u"State")), 0);
    for (const StringView member : {u"EOF", u"MoveNext", u"MoveFirst", u"Close"})
        EXPECT_EQ(numberOf([&] { call(*rows, member); }), failure::closedRecordset) << toUtf8(member);
    EXPECT_EQ(numberOf([&] { rows->Fields(u"i"); }), failure::closedRecordset);
    EXPECT_EQ(numberOf([&] { rows->row(); }), failure::closedRecordset);
    EXPECT_EQ(base->Execute(u"CREATE TABLE t (a)")->State(), 0);

    const ObjectPtr none =
        CObj(call(*base, u"execute", {Value(u"Select * from t"), Value(), Value(Long(-1))}));
    EXPECT_EQ(CLng(get(none, u"State")), 1);
    EXPECT_TRUE(CBool(get(none, u"EOF")));
    EXPECT_EQ(numberOf([&] { call(none, u"MoveNext"); }), failure::noRow);
    EXPECT_EQ(numberOf([&] { get(none, u"Fields", {Value(u"a")}); }), failure::noRow);
    EXPECT_EQ(numberOf([&] { get(none, u"Fields", {Value(u"j")}); }), failure::unknownField);
    EXPECT_EQ(numberOf([&] { get(none, u"Fields"); }), failure::argumentCount);
    base->Execute(u"Insert into t values (5)");
    call(none, u"MoveFirst");
    EXPECT_EQ(CLng(get(none, u"Fields", {Value(u"A")})), 5);
}

TEST_F(Memory, a_failure_behind_a_row_waits_until_it_is_reached)
{
    base->Execute(u"CREATE TABLE t (a, b)");
    base->Execute(u"Insert into t values (1,x'00'),(-9223372036854775807-1,2)");
    const RecordsetPtr rows = base->Execute(u"Select abs(a) as a, b from t");
    EXPECT_EQ(CLng(rows->Fields(u"a")), 1);
    EXPECT_EQ(numberOf([&] { rows->Fields(u"b"); }), failure::otherData);
    EXPECT_EQ(numberOf([&] { rows->MoveNext(); }), failure::otherData);
    EXPECT_TRUE(rows->Eof());
}

TEST_F(Memory, values_have_their_kinds)
{
    const std::vector<Value> row =
        base->Execute(u"SELECT 2147483647, -2147483648, 2147483648, 0.5, '', Null, 'a' + Null, 'ñ' + 'é'")
            ->row();
    EXPECT_EQ(*row[0].as<Long>(), 2147483647);
    EXPECT_EQ(*row[1].as<Long>(), INT32_MIN);
    EXPECT_EQ(*row[2].as<Double>(), 2147483648.0);
    EXPECT_EQ(*row[3].as<Double>(), 0.5);
    EXPECT_EQ(*row[4].as<String>(), u"");
    EXPECT_TRUE(row[5].isNull() && row[6].isNull());
    EXPECT_EQ(*row[7].as<String>(), u"ñé");
    // Bytes of another program that are no text: cut in a letter, one written too long, one of no letter.
    EXPECT_EQ(all(u"SELECT CAST(x'41C3' AS TEXT) UNION ALL SELECT CAST(x'C080C3B1' AS TEXT) UNION ALL SELECT "
                  u"CAST(x'C3B1FF' AS TEXT)"),
              u"A\uFFFD \uFFFDñ ñ\uFFFD ");
    EXPECT_EQ(base->engine().name, u"SQLite");
    EXPECT_TRUE(base->engine().version.starts_with(u"3."));
}

TEST_F(Memory, every_text_comes_back_unit_for_unit_or_is_refused)
{
    base->Execute(u"CREATE TABLE t (a TEXT)");
    for (std::uint32_t unit = 0; unit <= 0xFFFF; ++unit) {
        const bool surrogate = unit >= 0xD800 && unit < 0xE000;
        const auto each = static_cast<char16_t>(unit);
        const String text = String(u"a") + each + (each == u'\'' ? u"'b" : u"b");
        const auto insert = [&] {
            return base->Execute(u"SELECT '" + text + u"', '" + each + (each == u'\'' ? u"''" : u"'"));
        };
        if (surrogate || unit == 0 || unit >= 0xFFFE) {
            ASSERT_EQ(numberOf(insert), failure::otherData) << unit;
            continue;
        }
        const std::vector<Value> row = insert()->row();
        ASSERT_EQ(*row[0].as<String>(), String(u"a") + each + u"b") << unit;
        ASSERT_EQ(*row[1].as<String>(), String(1, each)) << unit;
    }
    const String high = u"\U00010000\U0001F600\U0001FFFE\U0001FFFF\U0010FFFF";
    base->Execute(u"Insert into t values ('" + high + u"')");
    EXPECT_EQ(all(u"Select a from t"), high + u" ");
    for (const StringView lost : {u"\xDC00\xD800", u"\xD800", u"\xD800\xD800\xDC00"})
        EXPECT_EQ(numberOf([&] { base->Execute(u"Insert into t values ('" + String(lost) + u"')"); }),
                  failure::otherData);
    EXPECT_EQ(numberOf([&] { base->Execute(u"Insert into t values ('\xFFFE')"); }, u"U+FFFE"),
              failure::otherData);
    EXPECT_EQ(all(u"Select count(*) from t"), u"1 ");
}

TEST_F(Memory, open_rows_stay_what_they_were)
{
    base->Execute(u"CREATE TABLE t (a INTEGER PRIMARY KEY)");
    base->Execute(u"Insert into t values (1),(2),(3),(4)");
    const RecordsetPtr rows = base->Execute(u"Select a from t");
    EXPECT_EQ(all(u"Select a from t"), u"1 2 3 4 ");
    base->Execute(u"Delete * From t where a>1");
    base->Execute(u"DROP TABLE t");
    String seen;
    for (; !rows->Eof(); rows->MoveNext())
        seen += CStr(rows->Fields(u"a"));
    EXPECT_EQ(seen, u"1234");
    EXPECT_EQ(numberOf([&] { rows->MoveFirst(); }), failure::tableMissing);
    base.reset();
    engine.reset();
    EXPECT_TRUE(rows->Eof());
}
