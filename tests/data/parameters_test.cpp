#include "data/sqlite/Parameters.h"

#include "data/sqlite/SqliteEngine.h"

#include "NumberOf.h"

using namespace zv;

namespace {

/// The text with places, and the values in brackets; "" where the statement stays as it is.
std::string parted(StringView statement)
{
    const auto parameters = sqlite::parametersOf(statement);
    if (!parameters)
        return {};
    std::string result = toUtf8(parameters->text);
    for (const auto& value : parameters->values) {
        const auto* text = std::get_if<std::string>(&value);
        result += text ? " [" + *text + "]" : " " + std::to_string(std::get<std::int64_t>(value));
    }
    return result;
}

} // namespace

TEST(Parameters, are_what_is_compared_assigned_or_inserted)
{
    struct Case {
        StringView statement;
        const char* parted;
    };
    for (const Case& each : {
             Case{u"Select 'x', 1 from t where a=3 and b in ('it''s',2) order by 1",
                  "Select 'x', 1 from t where a=? and b in (?,?) order by 1 3 [it's] 2"},
             Case{u"Update t Set a='', b=-1, c=1.5, d=99 WHERE k=5",
                  "Update t Set a=?, b=-1, c=1.5, d=? WHERE k=? [] 99 5"},
             Case{u"Insert into t (a) values (1,'ñ',Null,x'00',0x10)",
                  "Insert into t (a) values (?,?,Null,x'00',0x10) 1 [ñ]"},
             Case{u"select a from t where a in (select 1 from u where b=2 limit 3) and c=4",
                  "select a from t where a in (select 1 from u where b=? limit 3) and c=? 2 4"},
             Case{u"select a from t where a like 'x%' and [a=1]=1 -- =5",
                  "select a from t where a like 'x%' and [a=1]=? -- =5 1"},
             Case{u"insert into t select 1,'a' from u where b=9999999999999999999",
                  "insert into t select 1,'a' from u where b=9999999999999999999"},
             Case{u"select a from t where a=? and b=1", ""},
             Case{u"Select * from t", "Select * from t"},
             Case{u"PRAGMA user_version=1", ""},
             Case{u"select a from t where a='never ends", "select a from t where a='never ends"},
         })
        EXPECT_EQ(parted(each.statement), each.parted) << toUtf8(each.statement);
}

TEST(Parameters, a_statement_that_ran_before_sees_what_changed_since)
{
    const ConnectionPtr base = sqliteEngine()->temporary(u"", Database::centro);
    const auto names = [&](StringView key) {
        String result;
        for (const RecordsetPtr rows = base->Execute(u"Select * from t where k=" + String(key)); !rows->Eof();
             rows->MoveNext())
            for (const Value& value : rows->row())
                result += CStr(value) + u" ";
        return result;
    };
    base->Execute(u"CREATE TABLE t (k INTEGER PRIMARY KEY, a TEXT)");
    base->Execute(u"Insert into t values (1,'uno')");
    base->Execute(u"Insert into t values (2,'\uFEFFdos')");
    EXPECT_EQ(names(u"1") + names(u"2"), u"1 uno 2 \uFEFFdos ");
    // The same text twice at a time, and once more when both are done.
    const RecordsetPtr open = base->Execute(u"Select * from t where k<9");
    EXPECT_EQ(CStr(base->Execute(u"Select * from t where k<2")->Fields(u"a")), u"uno");
    base->Execute(u"ALTER TABLE t ADD COLUMN b TEXT DEFAULT 'más'");
    EXPECT_EQ(names(u"1"), u"1 uno más ");
    EXPECT_EQ(open->row().size(), 2U);
    try {
        base->Execute(u"Insert into t values (1,'it''s',3)");
        FAIL();
    } catch (const DataError& error) {
        EXPECT_EQ(error.statement(), u"Insert into t values (1,'it''s',3)");
    }
    base->Execute(u"DROP TABLE t");
    EXPECT_EQ(numberOf([&] { names(u"1"); }), failure::tableMissing);
    EXPECT_EQ(numberOf([&] { base->Execute(u"Select a from t where k=1 'x'"); }, u"'x'"),
              failure::badStatement);
}
