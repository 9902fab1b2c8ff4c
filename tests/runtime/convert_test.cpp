#include "runtime/Convert.h"
#include "runtime/PropertyBag.h"
#include "runtime/Region.h"

#include "data/NumberOf.h"

#include <cstdlib>
#include <functional>
#include <limits>

using namespace zv;

namespace {

using Conversion = std::function<Value(const Value&)>;

/// The text of what a conversion gives, or "!" and the number with which it fails.
std::string seen(const Conversion& convert, const Value& value)
{
    String text;
    const auto number = numberOf([&] { text = CStr(convert(value)); });
    return number == 0 ? toUtf8(text) : "!" + std::to_string(number);
}

struct Case {
    Conversion convert;
    Value value;
    std::string expected;
};

const ObjectPtr object = std::make_shared<PropertyBag>(u"Bag");

class Conversions : public testing::Test {
protected:
    void SetUp() override { useRegion(spanishRegion); }
    void TearDown() override { useRegion(spanishRegion); }
    static void check(const std::vector<Case>& cases)
    {
        for (std::size_t i = 0; i < cases.size(); ++i)
            EXPECT_EQ(seen(cases[i].convert, cases[i].value), cases[i].expected) << "case " << i;
    }
};

} // namespace

TEST_F(Conversions, whole_numbers_round_half_to_even_within_their_width)
{
    check({
        {CInt, u"7,5", "8"},           {CInt, u"6,5", "6"},         {CInt, -7.5, "-8"},
        {CInt, -6.5, "-6"},            {CInt, -0.5, "0"},           {CInt, 0.49999999999999994, "0"},
        {CInt, 32767.49, "32767"},     {CInt, 32767.5, "!6"},       {CInt, u"-32768,5", "-32768"},
        {CInt, -32768.51, "!6"},       {CByte, 255.5, "!6"},        {CByte, 254.5, "254"},
        {CByte, -0.5, "0"},            {CByte, Long{-1}, "!6"},     {CLng, 2147483647.4, "2147483647"},
        {CLng, 2147483647.5, "!6"},    {CLng, -2147483648.5, "-2147483648"},
        {CLng, Currency{25000}, "2"},  {CInt, Single{2.5F}, "2"},   {CLng, 1e300, "!6"},
        {CLng, true, "-1"},            {CInt, Value(), "0"},        {CInt, Null{}, "!94"},
        {CInt, u"", "!13"},            {CInt, u"siete", "!13"},     {CInt, object, "!13"},
        {CInt, LongArray{}, "!13"},    {CLng, Byte{200}, "200"},    {CByte, Integer{256}, "!6"},
        {CLng, std::numeric_limits<Double>::quiet_NaN(), "!6"},
    });
}

TEST_F(Conversions, other_types)
{
    check({
        {CSng, u"0,16", "0,16"},
        {CSng, 3.5e38, "!6"},
        {CSng, -3.5e38, "!6"},
        {CDbl, u"1E400", "!6"},
        {CDbl, u"-1" + String(400, u'0') + u"e-20", "0"},
        {CDbl, u"0," + String(400, u'0') + u"1e+20", "0"},
        {CDbl, Null{}, "!94"},
        {CCur, u"0,03125", "0,0312"},
        {CCur, u"-0,09375", "-0,0938"},
        {CCur, u"0,99996", "1"},
        {CCur, -922337203685477.0, "-922337203685477"},
        {CCur, 922337203685477.5, "922337203685477,5"},
        {CCur, 922337203685477.75, "!6"},
        {CCur, -922337203685478.0, "!6"},
        {CCur, Currency{std::numeric_limits<std::int64_t>::max()}, "922337203685477,5807"},
        {CBool, u"VERDADERO", "Verdadero"},
        {CBool, u"true", "Verdadero"},
        {CBool, u"Falso", "Falso"},
        {CBool, u"False", "Falso"},
        {CBool, u"0,0", "Falso"},
        {CBool, 0.1, "Verdadero"},
        {CBool, u"si", "!13"},
        {CBool, u"", "!13"},
        {CBool, Value(), "Falso"},
        {CBool, Null{}, "!94"},
        {isTrue, Null{}, "Falso"},
        {isTrue, Byte{1}, "Verdadero"},
        {isTrue, Integer{0}, "Falso"},
        {CStr, Null{}, "!94"},
        {CStr, Value(), ""},
        {CStr, object, "!13"},
        {CObj, ObjectPtr{}, "!91"},
        {CObj, Value(), "!91"},
        {CObj, Long{7}, "!13"},
    });
    EXPECT_EQ(CObj(object), object);
}

TEST_F(Conversions, text_of_numbers)
{
    check({
        {CStr, Single{0.16F}, "0,16"},
        {CStr, Single{1.0F / 3}, "0,3333333"},
        {CStr, Single{0.01234567F}, "1,234567E-02"},
        {CStr, Single{12345678.0F}, "1,234568E+07"},
        {CStr, 12.5, "12,5"},
        {CStr, -0.0, "0"},
        {CStr, 0.1 + 0.2, "0,3"},
        {CStr, 1.0 / 81, "1,23456790123457E-02"},
        {CStr, 123456789012345.0, "123456789012345"},
        {CStr, 999999999999999.6, "1E+15"},
        {CStr, -1e20, "-1E+20"},
        {CStr, 1.5e-300, "1,5E-300"},
        {CStr, std::numeric_limits<Double>::infinity(), "!6"},
        {CStr, Currency{-5}, "-0,0005"},
        {CStr, Currency{123400}, "12,34"},
        {CStr, Currency{std::numeric_limits<std::int64_t>::min()}, "-922337203685477,5808"},
        {CStr, Long{-7}, "-7"},
        {CStr, Byte{7}, "7"},
        {Str, Integer{7}, " 7"},
        {Str, -1.5, "-1.5"},
        {Str, 0.25, " 0.25"},
        {Str, Currency{15000}, " 1.5"},
        {Str, u"7,5", " 7.5"},
        {Str, Value(), " 0"},
        {Str, u"x", "!13"},
        {Str, Null{}, "!94"},
    });
    EXPECT_EQ(decimalText(std::numeric_limits<std::int64_t>::min()), u"-9223372036854775808");
    EXPECT_EQ(u"a" + Value(Null{}), u"a");
    EXPECT_EQ(u"a" + Value(Long{7}) + Value(u"b") + Value(), u"a7b");
}

TEST_F(Conversions, numeric_texts_follow_the_regional_settings)
{
    struct Reading {
        StringView text;
        const char* spanish; ///< "" where it is no number.
        const char* point;
    };
    const auto read = [](StringView text) {
        EXPECT_EQ(IsNumeric(text), seen(CDbl, text) != "!13") << toUtf8(text);
        return IsNumeric(text) ? toUtf8(Trim(Str(CDbl(text)))) : "";
    };
    for (const auto& [text, spanish, point] : {
             Reading{u"7", "7", "7"},
             {u"7,5", "7.5", "75"},
             {u"7.5", "75", "7.5"},
             {u" -7,25 ", "-7.25", "-725"},
             {u"7-", "-7", "-7"},
             {u"- 7", "-7", "-7"},
             {u"+7 +", "", ""},
             {u"-7-", "", ""},
             {u"1.234.567,5", "1234567.5", ""},
             {u"1,2,3", "", "123"},
             {u",5", "0.5", ""},
             {u".5", "", "0.5"},
             {u"5,", "5", "5"},
             {u"1E3", "1000", "1000"},
             {u"1d-2", "0.01", "0.01"},
             {u"12,5e+1", "125", "1250"},
             {u"1E", "", ""},
             {u"E1", "", ""},
             {u"7 5", "", ""},
             {u"7%", "", ""},
             {u"7€", "", ""},
             {u"-", "", ""},
             {u",", "", ""},
             {u"", "", ""},
             {u" ", "", ""},
             {u"\t7", "", ""},
             {u"٧", "", ""},
             {u"nan", "", ""},
             {u"0x10", "", ""},
         }) {
        useRegion(spanishRegion);
        EXPECT_EQ(read(text), spanish) << toUtf8(text);
        useRegion(pointRegion);
        EXPECT_EQ(read(text), point) << toUtf8(text);
    }
    EXPECT_EQ(CStr(1234.5), u"1234.5");
    EXPECT_FALSE(IsNumeric(u"1E400"));
    EXPECT_FALSE(IsNumeric(Null{}));
    EXPECT_FALSE(IsNumeric(object));
    EXPECT_FALSE(IsNumeric(LongArray{}));
    EXPECT_TRUE(IsNumeric(Value()));
    EXPECT_TRUE(IsNumeric(Currency{}));
}

TEST_F(Conversions, the_number_at_the_start_of_a_text)
{
    for (const auto& [text, number] : std::initializer_list<std::pair<StringView, Double>>{
             {u"29001", 29001}, {u" 12 3 abc", 123}, {u"-1.5e1x", -15}, {u"7,5", 7}, {u"12e", 12}, {u".5", 0.5},
             {u"", 0}, {u"abc", 0}, {u"-", 0}, {u"7-", 7}})
        EXPECT_EQ(Val(text), number) << toUtf8(text);
    EXPECT_EQ(numberOf([] { Val(u"1e999"); }), 6);
}

TEST(Regions, are_spanish_unless_the_locale_says_otherwise)
{
    for (const char* name : {"", "C", "POSIX", "C.UTF-8", "es_ES.UTF-8", "ca_ES", "es_ES@euro", "es", "fr_FR", "xx"})
        EXPECT_EQ(regionOfLocale(name), spanishRegion) << name;
    for (const char* name : {"en", "en_GB.UTF-8", "en_US@x", "es_MX.UTF-8", "ja_JP"})
        EXPECT_EQ(regionOfLocale(name), pointRegion) << name;
}

TEST(Regions, come_from_the_first_variable_that_is_set)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a process of its own, which has asked for no settings yet
    struct Case {
        const char *all, *numeric, *lang;
        bool point;
    };
    for (const auto& [all, numeric, lang, point] : {Case{"en_GB", "es_ES", "es_ES", true}, {"", "en_GB", "es_ES", true},
                                                    {"", "", "en_GB", true}, {"es_ES", "en_GB", "en_GB", false},
                                                    {"C", "en_GB", "en_GB", false}, {"", "", "", false}})
        EXPECT_EXIT(
            {
                setenv("LC_ALL", all, 1);
                setenv("LC_NUMERIC", numeric, 1);
                setenv("LANG", lang, 1);
                std::exit(region() == pointRegion ? 0 : 1);
            },
            testing::ExitedWithCode(point ? 0 : 1), "");
}
