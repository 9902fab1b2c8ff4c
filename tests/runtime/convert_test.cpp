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

void check(const Conversion& convert, const std::vector<Value>& values, const std::string& expected)
{
    std::string all;
    for (const Value& value : values)
        all += (all.empty() ? "" : " | ") + seen(convert, value);
    EXPECT_EQ(all, expected);
}

const ObjectPtr object = std::make_shared<PropertyBag>(u"Bag");

class Conversions : public testing::Test {
protected:
    void SetUp() override { useRegion(spanishRegion); }
    void TearDown() override { useRegion(spanishRegion); }
};

} // namespace

TEST_F(Conversions, whole_numbers_round_half_to_even_within_their_width)
{
    check(CInt,
          {u"7,5", u"6,5", -7.5, -6.5, -0.5, 0.49999999999999994, 32767.49, 32767.5, u"-32768,5", -32768.51,
           Single{2.5F}, Value(), Null{}, u"", u"siete", object, LongArray{}},
          "8 | 6 | -8 | -6 | 0 | 0 | 32767 | !6 | -32768 | !6 | 2 | 0 | !94 | !13 | !13 | !13 | !13");
    check(CByte, {255.5, 254.5, -0.5, Long{-1}, Integer{256}}, "!6 | 254 | 0 | !6 | !6");
    check(CLng,
          {2147483647.4, 2147483647.5, -2147483648.5, Currency{25000}, 1e300, true, Byte{200},
           std::numeric_limits<Double>::quiet_NaN()},
          "2147483647 | !6 | -2147483648 | 2 | !6 | -1 | 200 | !6");
}

Value text(const Value& value) { return CStr(value); }

TEST_F(Conversions, other_types)
{
    check(CSng, {u"0,16", 3.5e38, -3.5e38}, "0,16 | !6 | !6");
    check(CDbl, {u"1E400", u"-1" + String(400, u'0') + u"e-20", u"0," + String(400, u'0') + u"1e+20", Null{}},
          "!6 | 0 | 0 | !94");
    check(CCur,
          {u"0,03125", u"-0,09375", u"0,99996", -922337203685477.0, 922337203685477.5, 922337203685477.75,
           -922337203685478.0, Currency{std::numeric_limits<std::int64_t>::max()}},
          "0,0312 | -0,0938 | 1 | -922337203685477 | 922337203685477,5 | !6 | !6 | 922337203685477,5807");
    check(CBool, {u"VERDADERO", u"true", u"Falso", u"False", u"0,0", 0.1, u"si", u"", Value(), Null{}},
          "Verdadero | Verdadero | Falso | Falso | Falso | Verdadero | !13 | !13 | Falso | !94");
    check(isTrue, {Null{}, Byte{1}, Integer{0}}, "Falso | Verdadero | Falso");
    check(text, {Null{}, Value(), object}, "!94 |  | !13");
    check(CObj, {ObjectPtr{}, Value(), Long{7}}, "!91 | !91 | !13");
    EXPECT_EQ(CObj(object), object);
}

TEST_F(Conversions, text_of_numbers)
{
    check(text,
          {Single{0.16F}, Single{1.0F / 3}, Single{0.01234567F}, Single{12345678.0F}, 12.5, -0.0, 0.1 + 0.2,
           1.0 / 81, 123456789012345.0, 999999999999999.6, -1e20, 1.5e-300,
           std::numeric_limits<Double>::infinity(), Currency{-5}, Currency{123400},
           Currency{std::numeric_limits<std::int64_t>::min()}, Long{-7}, Byte{7}},
          "0,16 | 0,3333333 | 1,234567E-02 | 1,234568E+07 | 12,5 | 0 | 0,3 | 1,23456790123457E-02 | "
          "123456789012345 | 1E+15 | -1E+20 | 1,5E-300 | !6 | -0,0005 | 12,34 | -922337203685477,5808 | -7 | "
          "7");
    check(Str, {Integer{7}, -1.5, 0.25, Currency{15000}, u"7,5", Value(), u"x", Null{}},
          " 7 | -1.5 |  0.25 |  1.5 |  7.5 |  0 | !13 | !94");
    EXPECT_EQ(decimalText(std::numeric_limits<std::int64_t>::min()), u"-9223372036854775808");
    EXPECT_EQ(u"a" + Value(Null{}), u"a");
    EXPECT_EQ(u"a" + Value(Long{7}) + Value(u"b") + Value(), u"a7b");
}

TEST_F(Conversions, numeric_texts_follow_the_regional_settings)
{
    const auto read = [](const Value& text) -> Value {
        if (IsNumeric(text))
            return Trim(Str(CDbl(text)));
        EXPECT_EQ(seen(CDbl, text), "!13") << toUtf8(CStr(text));
        return u"no";
    };
    const std::vector<Value> numbers{u"7",     u"7,5", u"7.5", u" -7,25 ", u"7-",  u"- 7",  u"1.234.567,5",
                                     u"1,2,3", u",5",  u".5",  u"5,",      u"1E3", u"1d-2", u"12,5e+1"};
    check(read, numbers,
          "7 | 7.5 | 75 | -7.25 | -7 | -7 | 1234567.5 | no | 0.5 | no | 5 | 1000 | 0.01 | 125");
    useRegion(pointRegion);
    check(read, numbers, "7 | 75 | 7.5 | -725 | -7 | -7 | no | 123 | no | 0.5 | 5 | 1000 | 0.01 | 1250");
    EXPECT_EQ(CStr(1234.5), u"1234.5");
    for (const Region& settings : {spanishRegion, pointRegion}) {
        useRegion(settings);
        for (const StringView none : {u"+7 +", u"-7-", u"1E", u"E1", u"7 5", u"7%", u"7€", u"-", u",", u".",
                                      u"", u" ", u"\t7", u"٧", u"nan", u"0x10"})
            EXPECT_EQ(CStr(read(none)), u"no") << toUtf8(none);
    }
    check(IsNumeric, {u"1E400", Null{}, object, LongArray{}, Value(), Currency{}, true},
          "Falso | Falso | Falso | Falso | Verdadero | Verdadero | Verdadero");
}

TEST_F(Conversions, the_number_at_the_start_of_a_text)
{
    check([](const Value& text) { return Val(CStr(text)); },
          {u"29001", u" 12 3 abc", u"-1.5e1x", u"7,5", u"12e", u".5", u"", u"abc", u"-", u"7-", u"1e999"},
          "29001 | 123 | -15 | 7 | 12 | 0,5 | 0 | 0 | 0 | 7 | !6");
}

TEST(Regions, are_spanish_unless_the_locale_says_otherwise)
{
    for (const char* name :
         {"", "C", "POSIX", "C.UTF-8", "es_ES.UTF-8", "ca_ES", "es_ES@euro", "es", "fr_FR", "xx"})
        EXPECT_EQ(regionOfLocale(name), spanishRegion) << name;
    for (const char* name : {"en", "en_GB.UTF-8", "es_US@x", "es_MX.UTF-8", "ja_JP"})
        EXPECT_EQ(regionOfLocale(name), pointRegion) << name;
}
