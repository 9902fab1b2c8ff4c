#pragma once

#include "runtime/String.h"

#include <optional>

namespace zv::care {

/// Check digits of Spanish tax numbers, bank accounts and creditor identifiers. Pure functions; blanks,
/// points and hyphens within a number do not count, nor does the case of its letters.

/// The number as it is computed with.
String compact(StringView number);

enum class TaxNumber {
    right,
    wrong,  ///< Its control character is another.
    noForm, ///< Neither a NIF nor a NIE nor a CIF.
};
/// A CIF whose kind of body leaves it open may end in the digit or in the letter. The check covers neither
/// the letter in front of a CIF nor which of K, L and M begins a NIF.
TaxNumber checkTaxNumber(StringView number);
/// The control characters that fit what stands in front of the last one: "3", "C", or either of them: "3C".
/// "" for no form.
String taxControls(StringView number);

/// Two digits that make the remainder of 97 right (ISO 7064, MOD 97-10) of a text of letters and digits that
/// ends in the country and "00".
String mod97Control(StringView text);
/// Identifier of a creditor in Spain: ES, two control digits, the suffix of three characters, the tax number.
/// nullopt where that is not nine letters and digits, or the suffix not three.
std::optional<String> creditorIdentifier(StringView taxNumber, StringView suffix);

enum class Account {
    right,
    wrongControl,     ///< Of the twenty digits of a Spanish account: bank and branch, or account.
    wrongIbanControl, ///< Of the two digits behind the country.
    noForm,           ///< Neither twenty digits nor an IBAN.
};
Account checkAccount(StringView number);
/// The eight digits of bank and branch of a Spanish account; "" for any other.
String bankAndBranch(StringView account);

} // namespace zv::care
