// What the dialogs of the banks and of the parties to the direct debits do with their rows: they look for a
// bank by its number, for a branch within its bank, and accept nothing that lacks a part. What only a bank
// checks is advice.
#include "care/rules/CheckDigits.h"
#include "care/rules/RuleFacts.h"

#include "data/Statement.h"
#include "runtime/Convert.h"

#include <algorithm>

namespace zv::care {
namespace {

struct Branch {
    Long id = 0;
    Long bank = 0;
    String code, name, postalCode;
};

const std::map<Long, String>& bankNames(Facts& facts) { return facts.names(u"Banco", u"IDBanco", u"Nombre"); }
const std::map<Long, String>& bankNumbers(Facts& facts)
{
    return facts.names(u"Banco", u"IDBanco", u"Numero");
}

std::map<Long, Branch> branches(Facts& facts)
{
    std::map<Long, Branch> result;
    for (const auto& row :
         facts.rows(u"SELECT IDSucursal, CodBanco, Codigo, Nombre, CodigoPostal FROM Sucursal"))
        result[longIn(row[0])] = {.id = longIn(row[0]),
                                  .bank = longIn(row[1]),
                                  .code = textIn(row[2]),
                                  .name = textIn(row[3]),
                                  .postalCode = textIn(row[4])};
    return result;
}

String bankName(Facts& facts, Long bank)
{
    const auto& names = bankNames(facts);
    const auto found = names.find(bank);
    return found == names.end() ? u"el banco número " + decimalText(bank) : inQuotes(found->second);
}

void sameNumber(Facts& facts, Found& found)
{
    std::map<String, std::vector<Long>> byNumber;
    for (const auto& [bank, number] : bankNumbers(facts))
        if (!number.empty())
            byNumber[number].push_back(bank);
    for (const auto& [number, banks] : byNumber) {
        if (banks.size() < 2)
            continue;
        std::vector<String> words;
        for (const Long bank : banks)
            words.push_back(bankName(facts, bank));
        found.add(
            u"Banco", banks[1],
            statement(u"{} tienen el mismo número, {}: al cambiar cualquiera dice «Ya existe un banco con "
                      u"ese código» y no se guarda, ni sus sucursales; y escribirlo en un presentador elige "
                      u"uno cualquiera.",
                      {listed(words), number}),
            u"Dé a uno su número, o elimine el que no tenga cuentas ni presentadores.");
    }
}

void badNumber(Facts& facts, Found& found)
{
    for (const auto& [bank, number] : bankNumbers(facts))
        if (number.size() < 4 || bankNames(facts).at(bank).empty())
            found.add(u"Banco", bank,
                      statement(u"Al cambiar el banco {} o una de sus sucursales no se podrá aceptar: {}.",
                                {bankName(facts, bank),
                                 number.size() < 4
                                     ? u"su número, " + inQuotes(number) + u", no tiene cuatro dígitos"
                                     : String(u"no tiene nombre")}),
                      u"Ábralo y póngaselo.");
}

void noBank(Facts& facts, Found& found)
{
    for (const auto& [key, branch] : branches(facts))
        if (!bankNames(facts).contains(branch.bank))
            found.add(
                u"Sucursal", key,
                statement(u"La sucursal {} ({}) es del banco número {}, que no está: ninguna ventana la "
                          u"muestra.",
                          {inQuotes(branch.name), branch.code, branch.bank}),
                u"Si el banco se ha eliminado, restáurelo de la papelera; si no, pida a quien lleva la base "
                u"de datos que le dé su banco o la quite.");
}

void sameCode(Facts& facts, Found& found)
{
    std::map<std::pair<Long, String>, std::vector<const Branch*>> byCode;
    const std::map<Long, Branch> all = branches(facts);
    for (const auto& [key, branch] : all)
        if (bankNames(facts).contains(branch.bank) && !branch.code.empty())
            byCode[{branch.bank, branch.code}].push_back(&branch);
    for (const auto& [place, same] : byCode) {
        if (same.size() < 2)
            continue;
        std::vector<String> words;
        for (const Branch* each : same)
            words.push_back(inQuotes(each->name));
        found.add(
            u"Sucursal", same[1]->id,
            statement(
                u"En el banco {} hay {} sucursales con el código {}: {}. La ventana no lo dice al "
                u"cambiarlas; dar ese código a otra lo rechaza.",
                {bankName(facts, place.first), static_cast<Long>(same.size()), place.second, listed(words)}),
            u"Si es la misma guardada dos veces, elimine la que no tenga cuentas ni presentadores; si no, dé "
            u"a una su código.");
    }
}

void incompleteBranch(Facts& facts, Found& found)
{
    for (const auto& [key, branch] : branches(facts)) {
        const std::size_t postal = Trim(branch.postalCode).size();
        const StringView why = Trim(branch.name).empty()      ? u"no tiene nombre"
                               : Trim(branch.code).size() < 4 ? u"su código no tiene cuatro dígitos"
                               : postal != 0 && postal != 5   ? u"su código postal no tiene cinco cifras"
                                                              : u"";
        if (!why.empty() && bankNames(facts).contains(branch.bank))
            found.add(
                u"Sucursal", key,
                statement(u"Al cambiar la sucursal {} ({}) de {} no se podrá aceptar: {}.",
                          {inQuotes(branch.name), branch.code, bankName(facts, branch.bank), Value(why)}),
                u"Ábrala y corríjalo.");
    }
}

/// What the issuers and submitters refuse: a suffix that is empty, no number or shorter than three.
bool fitsSuffix(const String& suffix) { return IsNumeric(Value(Trim(suffix))) && Trim(suffix).size() >= 3; }

void submitter(Facts& facts, Found& found)
{
    const std::map<Long, Branch> all = branches(facts);
    for (const auto& row :
         facts.rows(u"SELECT IDPresentador, Nombre, NIF, Sufijo, CodBanco, CodSucursal FROM "
                    u"Presentador")) {
        const Long bank = longIn(row[4]);
        const auto branch = all.find(longIn(row[5]));
        std::vector<String> lacks;
        if (!bankNames(facts).contains(bank))
            lacks.emplace_back(u"su banco ya no está");
        else if (branch == all.end() || branch->second.bank != bank)
            lacks.emplace_back(u"su sucursal ya no está en " + bankName(facts, bank));
        if (!fitsSuffix(textIn(row[3])))
            lacks.emplace_back(u"su sufijo no son tres dígitos");
        if (Trim(textIn(row[1])).empty() || Trim(textIn(row[2])).empty())
            lacks.emplace_back(u"le falta el nombre o el NIF-CIF");
        if (!lacks.empty())
            found.add(u"Presentador", longIn(row[0]),
                      statement(u"Al abrir el presentador {} no se podrá aceptar: {}.",
                                {inQuotes(textIn(row[1])), listed(lacks)}),
                      u"Ábralo, elija o escriba lo que falta y acepte.");
    }
}

struct Party {
    Long id = 0;
    String name, tax, suffix;
    bool issuer = false; ///< And not an ordering party.
};

const Rows& partyRows(Facts& facts)
{
    return facts.rows(
        u"SELECT IDEmisor, Nombre, CIF, Sufijo, CodPresentador, Direccion, Poblacion, CodProvincia, CP, "
        u"CodPresentadorMTP, CodigoOrdenante, MTP FROM Emisor");
}

Party partyIn(const std::vector<Value>& row)
{
    return {.id = longIn(row[0]),
            .name = textIn(row[1]),
            .tax = textIn(row[2]),
            .suffix = textIn(row[3]),
            .issuer = Trim(textIn(row[10])).empty()};
}

/// Why the dialog will not accept the party as it is.
std::vector<String> lacksOf(Facts& facts, const std::vector<Value>& row)
{
    const Party party = partyIn(row);
    const bool served = isTrue(row[11]);
    std::vector<String> lacks;
    if (Trim(party.name).empty() || Trim(party.tax).empty())
        lacks.emplace_back(u"le falta el nombre o el NIF-CIF");
    if (!party.issuer) {
        const auto& provinces = facts.names(u"Provincia", u"IDProvincia", u"Descripcion");
        if (Trim(textIn(row[5])).empty() || Trim(textIn(row[6])).empty() || Trim(textIn(row[8])).empty() ||
            !provinces.contains(longIn(row[7])))
            lacks.emplace_back(u"le falta una parte de su dirección");
        return lacks;
    }
    const auto& submitters = served ? facts.names(u"PresentadorMTP", u"IDPresentadorMTP", u"Nombre")
                                    : facts.names(u"Presentador", u"IDPresentador", u"Nombre");
    if (!submitters.contains(longIn(row[served ? 9 : 4])))
        lacks.emplace_back(served ? u"su presentador del servicio MTP ya no está"
                                  : u"su presentador ya no está");
    if (!fitsSuffix(party.suffix))
        lacks.emplace_back(u"su sufijo no son tres dígitos");
    return lacks;
}

void issuer(Facts& facts, Found& found)
{
    for (const auto& row : partyRows(facts)) {
        const Party party = partyIn(row);
        if (const std::vector<String> lacks = lacksOf(facts, row); !lacks.empty())
            found.add(u"Emisor", party.id,
                      statement(u"Al abrir {} {} no se podrá aceptar: {}.",
                                {party.issuer ? u"el emisor" : u"el ordenante", inQuotes(party.name),
                                 listed(lacks)}),
                      u"Ábralo, elija o escriba lo que falta y acepte.");
    }
}

/// The text boxes of the dialog take no Null. With an ordering party it says nothing: the choice of the kind
/// clears the failure; nor with a row of the MTP service in a session without it, which registers the row.
void nullIssuer(Facts& facts, Found& found)
{
    struct Box {
        std::size_t place;
        StringView column, word;
    };
    constexpr Box boxes[] = {{1, u"Nombre", u"el nombre"},       {2, u"CIF", u"el NIF-CIF"},
                             {3, u"Sufijo", u"el sufijo"},       {5, u"Direccion", u"la dirección"},
                             {6, u"Poblacion", u"la población"}, {8, u"CP", u"el código postal"}};
    for (const auto& row : partyRows(facts)) {
        const Party party = partyIn(row);
        std::vector<String> words;
        std::vector<StringView> columns;
        for (const Box& box : boxes)
            if (row[box.place].isNull()) {
                words.emplace_back(box.word);
                columns.push_back(box.column);
            }
        if (words.empty() || !party.issuer)
            continue;
        found
            .add(u"Emisor", party.id,
                 statement(
                     u"Al abrir{} el emisor {} sale «ERROR al consultar la base de datos»: le falta {}, ni "
                     u"siquiera en blanco.",
                     {isTrue(row[11]) ? u" con el servicio MTP" : u"", inQuotes(party.name), listed(words)}),
                 lacksOf(facts, row).empty()
                     ? u"Ábralo y acepte: lo que falta se guarda en blanco y el mensaje no vuelve a salir."
                     : u"Ábralo, elija o escriba lo que falta y acepte.")
            .repair = [columns, id = party.id](Connection& centro) {
            for (const StringView column : columns)
                centro.Execute(statement(u"UPDATE Emisor SET {}='' WHERE IDEmisor={} AND {} IS NULL",
                                         {Value(column), id, Value(column)}));
        };
    }
}

void tax(Found& found, StringView table, Long row, StringView who, const String& name, const String& number)
{
    if (Trim(number).empty())
        return;
    const TaxNumber state = checkTaxNumber(number);
    if (state == TaxNumber::right)
        return;
    String text = statement(u"El NIF-CIF del {} {}, {}, ", {Value(who), inQuotes(name), inQuotes(number)});
    if (state == TaxNumber::noForm) {
        text += u"no tiene la forma de un NIF, NIE ni CIF.";
    } else {
        const String fits = taxControls(number);
        text += u"no cuadra: con lo demás tal como está acabaría en ";
        text += fits.size() == 1 ? fits : fits.substr(0, 1) + u" o " + fits.substr(1);
        text += u".";
    }
    found.add(table, row, std::move(text),
              u"La ventana no lo mira y el banco sí: compruébelo antes de mandar una remesa.");
}

void taxNumbers(Facts& facts, Found& found)
{
    for (const auto& row :
         facts.rows(u"SELECT IDPresentador, Nombre, NIF, Sufijo, CodBanco, CodSucursal FROM "
                    u"Presentador"))
        tax(found, u"Presentador", longIn(row[0]), u"presentador", textIn(row[1]), textIn(row[2]));
    for (const auto& row : partyRows(facts)) {
        const Party party = partyIn(row);
        tax(found, u"Emisor", party.id, party.issuer ? u"emisor" : u"ordenante", party.name, party.tax);
    }
}

void creditors(Facts& facts, Found& found)
{
    std::map<String, std::vector<Party>> byIdentifier;
    for (const auto& row : partyRows(facts)) {
        const Party party = partyIn(row);
        if (!party.issuer)
            continue;
        if (const auto identifier = creditorIdentifier(party.tax, Trim(party.suffix)))
            byIdentifier[*identifier].push_back(party);
    }
    for (const auto& [identifier, same] : byIdentifier) {
        if (same.size() < 2)
            continue;
        std::vector<String> words;
        for (const Party& each : same)
            words.push_back(inQuotes(each.name));
        found.add(
            u"Emisor", same[1].id,
            statement(u"{} tienen el mismo NIF-CIF y sufijo, y con ellos el mismo identificador de acreedor, "
                      u"{}: el banco no distingue sus recibos.",
                      {listed(words), identifier}),
            u"Dé a uno otro sufijo, el que le haya asignado el banco.");
    }
}

void accounts(Facts& facts, Found& found)
{
    const std::map<Long, Branch> all = branches(facts);
    for (const auto& row : facts.rows(u"SELECT IDCuenta, codSucursal, Numero FROM Cuenta")) {
        const String number = textIn(row[2]);
        if (Trim(number).empty())
            continue;
        String why;
        const auto branch = all.find(longIn(row[1]));
        switch (checkAccount(number)) {
        case Account::wrongControl:
            why = u"sus dos dígitos de control no cuadran";
            break;
        case Account::wrongIbanControl:
            why = u"los dos dígitos detrás del país no cuadran";
            break;
        case Account::noForm:
            why = u"no tiene veinte cifras ni la forma de un IBAN";
            break;
        case Account::right:
            const String told = bankAndBranch(number);
            if (branch != all.end() && bankNumbers(facts).contains(branch->second.bank) && !told.empty() &&
                told != bankNumbers(facts).at(branch->second.bank) + branch->second.code)
                why = u"no empieza por el banco y la sucursal que tiene puestos, " +
                      bankName(facts, branch->second.bank) + u" " + inQuotes(branch->second.name);
            break;
        }
        if (!why.empty())
            found.add(u"Cuenta", longIn(row[0]), u"La cuenta " + inQuotes(number) + u": " + why + u".",
                      u"Compruébela con la libreta o con el banco antes de mandar una remesa.");
    }
}

constexpr Rule rules[] = {
    {u"banco-repetido", Area::banks, false, sameNumber},
    {u"banco-incompleto", Area::banks, false, badNumber},
    {u"sucursal-sin-banco", Area::banks, false, noBank},
    {u"sucursal-repetida", Area::banks, false, sameCode},
    {u"sucursal-incompleta", Area::banks, false, incompleteBranch},
    {u"presentador-incompleto", Area::banks, false, submitter},
    {u"emisor-incompleto", Area::banks, false, issuer},
    {u"emisor-nulo", Area::banks, false, nullIssuer},
    {u"nif", Area::banks, true, taxNumbers},
    {u"acreedor", Area::banks, true, creditors},
    {u"cuenta", Area::banks, true, accounts},
};

} // namespace

std::span<const Rule> bankRules() { return rules; }

} // namespace zv::care
