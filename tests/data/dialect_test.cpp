#include "data/Connection.h"
#include "data/DataError.h"
#include "data/Dialect.h"

#include "NumberOf.h"
#include "data/Statement.h"

#include <stdexcept>

using namespace zv;

namespace {

constexpr Dialect strict{.joinTexts = u"||", .deleteWithStar = false};

String rewritten(StringView statement)
{
    String room;
    return String(inDialect(statement, strict, room));
}

} // namespace

TEST(Dialect, rewrites_only_what_the_engine_lacks)
{
    struct Case {
        StringView before, after;
    };
    for (const auto& [before, after] : {
             Case{u"Delete * From Sucursal where  IDSucursal=3",
                  u"Delete  From Sucursal where  IDSucursal=3"},
             Case{u"/* * */DELETE/**/*FROM a", u"/* * */DELETE/**/FROM a"},
             Case{u"SELECT a.b + ' ' + a.c + ', ' + d AS n, e + 1 FROM t WHERE f+2=3 and g='x'",
                  u"SELECT a.b || ' ' || a.c || ', ' || d AS n, e + 1 FROM t WHERE f+2=3 and g='x'"},
             Case{u"SELECT a + b + '!' FROM t", u"SELECT a || b || '!' FROM t"},
             Case{u"SELECT ('a' + b) + c, len('a') + 5, trim(a)+'x'",
                  u"SELECT ('a' || b) || c, len('a') + 5, trim(a)||'x'"},
             Case{u"SELECT [a+'] + 'x', \"b+'\"+'y', `c+'` + d",
                  u"SELECT [a+'] || 'x', \"b+'\"||'y', `c+'` + d"},
             Case{u"SELECT 'a''+' + 'Delete * From b; + ' -- 'x' + y\n+ '' /* + '' */ + c",
                  u"SELECT 'a''+' || 'Delete * From b; + ' -- 'x' + y\n|| '' /* + '' */ || c"},
         })
        EXPECT_EQ(rewritten(before), after) << toUtf8(before);
}

TEST(Dialect, leaves_the_rest_and_does_not_copy_it)
{
    String room = u"untouched";
    for (const StringView same :
         {u"Update t Set a='x+y', b='Delete * From t' where c=1+2;  -- end",
          u"SELECT * FROM t WHERE a='b' AND c+d=1.5e+3", u"SELECT count(*)+1 FROM t ORDER BY a ;;",
          u"Insert into t values (1,'a','b',-2,+3)", u""})
        EXPECT_EQ(inDialect(same, strict, room).data(), same.data()) << toUtf8(same);
    EXPECT_EQ(room, u"untouched");
    const StringView asItStands = u"Delete * From t where a='b'+c";
    EXPECT_EQ(inDialect(asItStands, {}, room).data(), asItStands.data());
}

TEST(Dialect, refuses_a_second_statement)
{
    for (const StringView two : {u"SELECT 1; DELETE FROM t", u"SELECT ';';;'x'", u"Delete * From t;/**/x"})
        EXPECT_EQ(numberOf([&] { rewritten(two); }), failure::badStatement) << toUtf8(two);
}

TEST(Statement, puts_values_in_their_places_once)
{
    EXPECT_EQ(statement(u"a={} b='{}' {}{}", {Value(Long(-7)), Value(u"{} o'x"), Value(Null()), Value(2.5)}),
              u"a=-7 b='{} o'x' NULL2.5");
    EXPECT_EQ(statement(u"{},{},{}", {Value(true), Value(Currency{9223372036854775807}), Value(Byte(200))}),
              u"-1,922337203685477.5807,200");
    EXPECT_EQ(literal(Value(u"o'x")) + literal(Value(Currency{-5})) + literal(Value()), u"'o''x'-0.0005NULL");
    EXPECT_THROW(statement(u"{}", {}), std::logic_error);
    EXPECT_THROW(statement(u"x", {Value(u"{}")}), std::logic_error);
}
