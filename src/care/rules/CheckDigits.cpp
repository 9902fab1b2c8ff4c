#include "care/rules/CheckDigits.h"

#include <algorithm>
#include <array>

namespace zv::care {
namespace {

constexpr StringView naturalControls = u"TRWAGMYFPDXBNJZSQVHLCKE";
constexpr StringView legalControls = u"JABCDEFGHI";
/// First letters of legal persons; those that end in a letter only, in a digit only.
constexpr StringView legalKinds = u"ABCDEFGHJNPQRSUVW";
constexpr StringView endInLetter = u"NPQRSW";
constexpr StringView endInDigit = u"ABEH";

bool isDigit(char16_t c) { return c >= u'0' && c <= u'9'; }
bool isLetter(char16_t c) { return c >= u'A' && c <= u'Z'; }
bool allDigits(StringView text) { return std::ranges::all_of(text, isDigit); }
unsigned digit(char16_t c) { return static_cast<unsigned>(c - u'0'); }

unsigned long numberOf(StringView digits)
{
    unsigned long number = 0;
    for (const char16_t each : digits)
        number = number * 10 + digit(each);
    return number;
}

String naturalControl(StringView digits) { return String() + naturalControls[numberOf(digits) % 23]; }

/// Luhn's sum, the odd places doubled.
String legalControl(char16_t kind, StringView digits)
{
    unsigned sum = 0;
    for (std::size_t place = 0; place < digits.size(); ++place) {
        const unsigned value = digit(digits[place]) * (place % 2 == 0 ? 2 : 1);
        sum += value / 10 + value % 10;
    }
    const std::size_t control = (10 - sum % 10) % 10;
    String fits;
    if (endInLetter.find(kind) == StringView::npos)
        fits += static_cast<char16_t>(u'0' + control);
    if (endInDigit.find(kind) == StringView::npos)
        fits += legalControls[control];
    return fits;
}

/// Remainder of 97 of the text, its letters as 10 to 35.
unsigned remainder97(StringView text)
{
    unsigned result = 0;
    for (const char16_t each : text)
        result = isDigit(each) ? (result * 10 + digit(each)) % 97
                               : (result * 100 + static_cast<unsigned>(each - u'A') + 10) % 97;
    return result;
}

/// Control digit of ten digits of an account, by the weights of the powers of two.
char16_t accountControl(StringView tenDigits)
{
    constexpr std::array<unsigned, 10> weights{1, 2, 4, 8, 5, 10, 9, 7, 3, 6};
    unsigned sum = 0;
    for (std::size_t place = 0; place < weights.size(); ++place)
        sum += digit(tenDigits[place]) * weights[place];
    const unsigned control = 11 - sum % 11;
    return control == 11 ? u'0' : control == 10 ? u'1' : static_cast<char16_t>(u'0' + control);
}

constexpr std::size_t taxLength = 9;
constexpr std::size_t accountLength = 20;

bool isSpanishIban(StringView text)
{
    return text.size() == accountLength + 4 && text.starts_with(u"ES") && allDigits(text.substr(2));
}

bool isIban(StringView text)
{
    return text.size() >= 15 && text.size() <= 34 && isLetter(text[0]) && isLetter(text[1]) &&
           allDigits(text.substr(2, 2)) &&
           std::ranges::all_of(text, [](char16_t c) { return isDigit(c) || isLetter(c); });
}

bool fitsAccount(StringView digits)
{
    return accountControl(u"00" + String(digits.substr(0, 8))) == digits[8] &&
           accountControl(digits.substr(10)) == digits[9];
}

} // namespace

String compact(StringView number)
{
    String result;
    for (const char16_t each : number)
        if (StringView(u" .-\t\u00A0").find(each) == StringView::npos)
            result += each >= u'a' && each <= u'z' ? static_cast<char16_t>(each - u'a' + u'A') : each;
    return result;
}

String taxControls(StringView number)
{
    const String text = compact(number);
    if (text.size() != taxLength || !allDigits(StringView(text).substr(1, 7)))
        return {};
    const char16_t first = text.front();
    const StringView digits = StringView(text).substr(1, 7);
    if (isDigit(first))
        return naturalControl(StringView(text).substr(0, 8));
    if (first >= u'X' && first <= u'Z')
        return naturalControl(String(1, static_cast<char16_t>(u'0' + first - u'X')) + String(digits));
    if (first >= u'K' && first <= u'M')
        return naturalControl(digits);
    return legalKinds.find(first) == StringView::npos ? String() : legalControl(first, digits);
}

TaxNumber checkTaxNumber(StringView number)
{
    const String fits = taxControls(number);
    if (fits.empty())
        return TaxNumber::noForm;
    return fits.find(compact(number).back()) == String::npos ? TaxNumber::wrong : TaxNumber::right;
}

String mod97Control(StringView text)
{
    const unsigned control = 98 - remainder97(text);
    return {static_cast<char16_t>(u'0' + control / 10), static_cast<char16_t>(u'0' + control % 10)};
}

std::optional<String> creditorIdentifier(StringView taxNumber, StringView suffix)
{
    const String tax = compact(taxNumber);
    const String business = compact(suffix);
    const auto fits = [](StringView text, std::size_t length) {
        return text.size() == length &&
               std::ranges::all_of(text, [](char16_t c) { return isDigit(c) || isLetter(c); });
    };
    if (!fits(tax, taxLength) || !fits(business, 3))
        return std::nullopt;
    return u"ES" + mod97Control(tax + u"ES00") + business + tax;
}

Account checkAccount(StringView number)
{
    const String text = compact(number);
    if (text.size() == accountLength && allDigits(text))
        return fitsAccount(text) ? Account::right : Account::wrongControl;
    if (!isIban(text))
        return Account::noForm;
    if (remainder97(text.substr(4) + text.substr(0, 4)) != 1)
        return Account::wrongIbanControl;
    return !isSpanishIban(text) || fitsAccount(StringView(text).substr(4)) ? Account::right
                                                                           : Account::wrongControl;
}

String bankAndBranch(StringView account)
{
    const String text = compact(account);
    if (text.size() == accountLength && allDigits(text))
        return text.substr(0, 8);
    return isSpanishIban(text) ? text.substr(4, 8) : String();
}

} // namespace zv::care
