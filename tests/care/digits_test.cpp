#include "care/rules/CheckDigits.h"

#include "runtime/Convert.h"

#include <gtest/gtest.h>

#include <random>

using namespace zv;
using namespace zv::care;

TEST(CheckDigits, known_numbers)
{
    const struct {
        StringView number;
        TaxNumber state;
        StringView controls;
    } taxes[] = {
        {u"12345678Z", TaxNumber::right, u"Z"},  {u"12.345.678-z", TaxNumber::right, u"Z"},
        {u"12345678J", TaxNumber::wrong, u"Z"},  {u"X1234567L", TaxNumber::right, u"L"},
        {u"Y1234567X", TaxNumber::right, u"X"},  {u"Z1234567R", TaxNumber::right, u"R"},
        {u"B85626240", TaxNumber::right, u"0"},  {u"B8562624J", TaxNumber::wrong, u"0"},
        {u"Q2826000H", TaxNumber::right, u"H"},  {u"Q28260008", TaxNumber::wrong, u"H"},
        {u"G28123453", TaxNumber::right, u"3C"}, {u"G2812345C", TaxNumber::right, u"3C"},
        {u"I28123453", TaxNumber::noForm, u""},  {u"B2812345", TaxNumber::noForm, u""},
        {u"B2812345ñ", TaxNumber::wrong, u"3"},  {u"", TaxNumber::noForm, u""},
        {u"1234567890", TaxNumber::noForm, u""},
    };
    for (const auto& [number, state, controls] : taxes) {
        EXPECT_EQ(checkTaxNumber(number), state) << toUtf8(number);
        EXPECT_EQ(taxControls(number), controls) << toUtf8(number);
    }
    EXPECT_EQ(creditorIdentifier(u"B85626240", u"000"), u"ES77000B85626240");
    EXPECT_EQ(creditorIdentifier(u"12345678j", u"000"), u"ES0500012345678J");
    EXPECT_EQ(creditorIdentifier(u"B85626240", u"00"), std::nullopt);
    EXPECT_EQ(creditorIdentifier(u"B8562624", u"000"), std::nullopt);
    const std::pair<StringView, Account> accounts[] = {
        {u"ES91 2100 0418 4502 0005 1332", Account::right},
        {u"2100 0418 45 0200051332", Account::right},
        {u"2100 0418 46 0200051332", Account::wrongControl},
        {u"2100 0418 35 0200051332", Account::wrongControl},
        {u"ES92 2100 0418 4502 0005 1332", Account::wrongIbanControl},
        {u"DE89 3704 0044 0532 0130 00", Account::right},
        {u"GB82 WEST 1234 5698 7654 32", Account::right},
        {u"2100 0418", Account::noForm},
        {u"", Account::noForm},
    };
    for (const auto& [number, state] : accounts)
        EXPECT_EQ(checkAccount(number), state) << toUtf8(number);
    EXPECT_EQ(bankAndBranch(u"ES91 2100 0418 4502 0005 1332"), u"21000418");
}

/// A character of what the control covers is another: of the digits, or the control itself.
TEST(CheckDigits, a_thousand_right_and_a_thousand_of_one_wrong_character)
{
    std::mt19937 dice(20251125);
    const auto below = [&](std::size_t limit) { return static_cast<std::size_t>(dice() % limit); };
    constexpr StringView kinds = u"ABCDEFGHJNPQRSUVWKLMXYZ0123456789";
    constexpr StringView signs = u"0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    for (int i = 0; i < 1000; ++i) {
        String right(1, kinds[below(kinds.size())]);
        for (int digit = 0; digit < 7; ++digit)
            right += static_cast<char16_t>(u'0' + below(10));
        const String fits = taxControls(right + u"0");
        right += fits[below(fits.size())];
        EXPECT_EQ(checkTaxNumber(right), TaxNumber::right) << toUtf8(right);
        String wrong = right;
        const std::size_t place = 1 + below(8);
        do
            wrong[place] = signs[below(signs.size())];
        while (wrong[place] == right[place] || (place == 8 && fits.find(wrong[place]) != String::npos));
        EXPECT_NE(checkTaxNumber(wrong), TaxNumber::right) << toUtf8(right) << ' ' << toUtf8(wrong);
    }
}
