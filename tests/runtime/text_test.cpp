#include "runtime/Convert.h"
#include "runtime/String.h"

#include "data/NumberOf.h"

#include <set>
#include <stdexcept>

using namespace zv;

TEST(Texts, go_to_utf8_and_back)
{
    for (const StringView text :
         {u"", u"Añadir €", u"\u007f\u0080\u07ff\u0800\uffff", u"\U00010000😀\U0010ffff"}) {
        EXPECT_TRUE(isWellFormed(text));
        EXPECT_EQ(fromUtf8(toUtf8(text)), text) << toUtf8(text);
    }
    EXPECT_EQ(toUtf8(u"ñ€😀"), "\xC3\xB1\xE2\x82\xAC\xF0\x9F\x98\x80");
    const String high(1, char16_t{0xD83D});
    const String low(1, char16_t{0xDE00});
    for (const String& lone : {high, low, u"a" + high + u"b", low + high, high + high + low}) {
        EXPECT_FALSE(isWellFormed(lone));
        EXPECT_NE(toUtf8(lone).find("\xEF\xBF\xBD"), std::string::npos);
    }
}

TEST(Texts, are_counted_in_units)
{
    EXPECT_EQ(Left(u"año😀", 4).size(), 4U);
    EXPECT_EQ(Left(u"año", 9), u"año");
    EXPECT_EQ(Right(u"año", 2), u"ño");
    EXPECT_EQ(Right(u"año", 9), u"año");
    EXPECT_EQ(Right(u"año", 0), u"");
    EXPECT_EQ(numberOf([] { Left(u"a", -1); }), 5);
    EXPECT_EQ(numberOf([] { Right(u"a", -1); }), 5);
    EXPECT_EQ(cut(u"a😀b", 2), u"a");
    EXPECT_EQ(cut(u"a😀b", 3), u"a😀");
    EXPECT_EQ(cut(u"a😀", 9), u"a😀");
    EXPECT_EQ(cut(u"😀", 0), u"");
    EXPECT_EQ(Trim(u"  a b "), u"a b");
    EXPECT_EQ(Trim(u"   "), u"");
    EXPECT_EQ(Trim(u"\ta\u00a0"), u"\ta\u00a0");
    EXPECT_EQ(Replace(u"''a'", u"'", u"''"), u"''''a''");
    EXPECT_EQ(Replace(u"aaa", u"aa", u"b"), u"ba");
    EXPECT_EQ(Replace(u"abc", u"", u"x"), u"abc");
}

TEST(Names, match_without_regard_to_ascii_case)
{
    EXPECT_TRUE(sameName(u"IDTipoIva", u"idtipoiva"));
    EXPECT_FALSE(sameName(u"Año", u"aÑO"));
    EXPECT_FALSE(sameName(u"ab", u"abc"));
    EXPECT_FALSE(sameName(u"@", u"`"));
    EXPECT_EQ(lowerName(u"Ñandú[Z]"), u"Ñandú[z]");
    const std::set<String, NameLess> names{u"b", u"B", u"A_", u"aB", u"a", u"AZ", u"Ñ", u"ñ"};
    EXPECT_EQ(std::vector<String>(names.begin(), names.end()),
              (std::vector<String>{u"a", u"A_", u"aB", u"AZ", u"b", u"Ñ", u"ñ"}));
}

TEST(Texts, refuse_bytes_that_are_no_utf8)
{
    for (const char* bytes : {"\x80", "a\xC3", "\xE2\x82", "\xF0\x9F\x98", "\xC3(", "\xE2\x82(", "\xC0\x80",
                              "\xC1\xBF", "\xE0\x9F\xBF", "\xF0\x8F\xBF\xBF", "\xED\xA0\x80", "\xED\xBF\xBF",
                              "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF", "\xC3\xB1\xB1"})
        EXPECT_THROW(fromUtf8(bytes), std::invalid_argument) << testing::PrintToString(std::string(bytes));
    EXPECT_THROW(fromUtf8(std::string_view("\xC3\xB1", 1)), std::invalid_argument);
    EXPECT_EQ(fromUtf8(std::string_view("a\0b", 3)), String(u"a\0b", 3));
}
