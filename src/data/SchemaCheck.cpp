#include "data/SchemaCheck.h"

#include "data/Schema.h"
#include "data/Schools.h"
#include "data/Statement.h"
#include "runtime/Convert.h"

#include <algorithm>
#include <utility>

namespace zv {
namespace {

using schema::Column;
using schema::Table;
using schema::Use;

/// Collector of one database's findings.
class Findings {
public:
    Findings(std::vector<String>& lines, StringView database) : lines_(lines), database_(database) {}
    void add(StringView pattern, std::initializer_list<Value> values)
    {
        lines_.push_back(String(database_) + u": " + statement(pattern, values));
    }

private:
    std::vector<String>& lines_;
    StringView database_;
};

bool holds(const std::vector<String>& columns, StringView name)
{
    return std::ranges::any_of(columns, [&](const String& each) { return sameName(each, name); });
}

bool isListed(const Table& table, StringView name)
{
    return std::ranges::any_of(table.columns(),
                               [&](const Column& each) { return sameName(each.name, name); });
}

String listed(const Table& table)
{
    String result;
    for (const Column& column : table.columns())
        result += (result.empty() ? u"" : u", ") + String(column.name);
    return result;
}

bool sameOrder(const Table& table, const std::vector<String>& columns)
{
    return std::ranges::equal(table.columns(), columns, [](const Column& column, const String& name) {
        return sameName(column.name, name);
    });
}

void checkColumns(Findings& findings, const Table& table, const std::vector<String>& columns, bool byPosition)
{
    bool complete = true;
    for (const Column& column : table.columns()) {
        if (column.addedByUs || holds(columns, column.name))
            continue;
        complete = false;
        findings.add(u"a la tabla {} le falta la columna {}.", {table.name, column.name});
    }
    if (!byPosition)
        return;
    for (const String& column : columns) {
        if (isListed(table, column))
            continue;
        complete = false;
        findings.add(u"a la tabla {} le sobra la columna {}: sus filas se escriben sin nombrar las columnas.",
                     {table.name, column});
    }
    if (complete && !sameOrder(table, columns))
        findings.add(u"la tabla {} tiene las columnas en otro orden; debe ser {}.",
                     {table.name, listed(table)});
}

const FoundTable* tableIn(const std::vector<FoundTable>& found, StringView name)
{
    const auto match =
        std::ranges::find_if(found, [&](const FoundTable& each) { return sameName(each.name, name); });
    return match == found.end() ? nullptr : &*match;
}

void checkDatabase(Findings& findings, const std::vector<FoundTable>& found, Database which)
{
    for (const Table& table : schema::tables(which)) {
        if (table.use == Use::addedByUs)
            continue;
        if (const FoundTable* match = tableIn(found, table.name))
            checkColumns(findings, table, match->columns,
                         which == Database::centro && table.use == Use::positional);
        else
            findings.add(u"falta la tabla {}.", {table.name});
    }
}

/// Probe query, without rows: the existing columns by the names that the dialogs use, and truth values as
/// numbers.
String question(const Table& table, const std::vector<String>& columns)
{
    String names;
    String truths;
    for (const Column& column : table.columns()) {
        if (column.addedByUs || !holds(columns, column.name))
            continue;
        names += (names.empty() ? u"" : u", ") + String(column.name);
        if (column.type == schema::Type::flag)
            truths += u" And " + String(column.name) + u"=1";
    }
    return names.empty() ? names
                         : u"Select " + names + u" From " + String(table.name) + u" Where 1=0" + truths;
}

void checkReading(Findings& findings, Connection& base, const std::vector<FoundTable>& found, Database which)
{
    for (const Table& table : schema::tables(which)) {
        const FoundTable* match = tableIn(found, table.name);
        const String asked = match ? question(table, match->columns) : String();
        if (asked.empty())
            continue;
        try {
            base.Execute(asked);
        } catch (const DataError& error) {
            if (error.number() == failure::connectionLost)
                throw;
            findings.add(u"la tabla {} está, pero así no pueden leerla las ventanas: {}.{}",
                         {table.name, error.engineText(),
                          isLacking(error)
                              ? u" Falta el permiso sobre su esquema, o un nombre lleva mayúsculas "
                                u"entre comillas."
                              : u""});
        }
    }
}

void checkFile(Findings& findings, const std::vector<String>& damage)
{
    if (damage.empty())
        return;
    findings.add(
        u"está dañada ({}{}). Que nadie siga con ella: ponga en su lugar la última copia de seguridad "
        u"de las tres bases. Si no la hay, guarde una copia de los ficheros tal como están antes de "
        u"intentar recuperarlos.",
        {damage.front(),
         damage.size() > 1 ? statement(u", y {} más", {static_cast<Long>(damage.size() - 1)}) : String()});
}

using Indexes = std::vector<std::pair<String, String>>;

/// Table and leading column of each; nullopt where the engine does not tell.
std::optional<Indexes> indexesIn(Connection& base, DdlStyle style)
{
    try {
        Indexes result;
        for (const RecordsetPtr rows = base.executeNative(schema::indexQuery(style)); !rows->Eof();
             rows->MoveNext())
            result.emplace_back(CStr(rows->row()[0]), CStr(rows->row()[1]));
        return result;
    } catch (const DataError& error) {
        if (error.number() == failure::connectionLost)
            throw;
        return std::nullopt;
    }
}

void addMissingIndexes(std::vector<Lack>& lacks, Connection& base, DdlStyle style,
                       const std::vector<FoundTable>& found, Database which)
{
    const std::optional<Indexes> there = indexesIn(base, style);
    if (!there)
        return;
    for (const Table& table : schema::tables(which)) {
        const FoundTable* match = tableIn(found, table.name);
        if (match == nullptr)
            continue;
        for (schema::Index& each : indexes(table, style))
            if (holds(match->columns, each.column) && std::ranges::none_of(*there, [&](const auto& index) {
                    return sameName(index.first, table.name) && sameName(index.second, each.column);
                }))
                lacks.push_back({which, String(table.name) + u" (" + String(each.column) + u")",
                                 std::move(each.definition)});
    }
}

using Check = void (*)(Findings&, Engine&, Connection&, Database);

std::vector<String> inAllDatabases(const School& school, Engine& engine, Check check)
{
    struct {
        ConnectionPtr School::*base;
        StringView name;
        Database which;
    } constexpr databases[] = {{&School::centro, u"Base del centro", Database::centro},
                               {&School::borrado, u"Base de borrados", Database::borrado},
                               {&School::entrada, u"Base de entrada", Database::entrada}};
    std::vector<String> lines;
    for (const auto& [base, name, which] : databases) {
        Findings findings(lines, name);
        check(findings, engine, *(school.*base), which);
    }
    return lines;
}

} // namespace

std::vector<String> checkSchool(const School& school, Engine& engine)
{
    return inAllDatabases(school, engine,
                          [](Findings& findings, Engine& asked, Connection& base, Database which) {
                              checkDatabase(findings, asked.tables(base), which);
                          });
}

std::vector<String> checkAccess(const School& school, Engine& engine)
{
    return inAllDatabases(school, engine,
                          [](Findings& findings, Engine& asked, Connection& base, Database which) {
                              checkReading(findings, base, asked.tables(base), which);
                          });
}

std::vector<String> checkDamage(const School& school, Engine& engine)
{
    return inAllDatabases(school, engine,
                          [](Findings& findings, Engine& asked, Connection& base, Database /*which*/) {
                              checkFile(findings, asked.damage(base));
                          });
}

Lacks lacksOf(const School& school, Engine& engine)
{
    Lacks result;
    // No lookups in deleted records, of which only the largest key is asked for.
    for (const Database which : {Database::centro, Database::entrada}) {
        Connection& base = *baseOf(school, which);
        const DdlStyle style = engine.ddl(base);
        const std::vector<FoundTable> found = engine.tables(base);
        addMissingIndexes(result.indexes, base, style, found, which);
        if (which != Database::centro)
            continue;
        result.history = tableIn(found, u"HistorialCabeza") == nullptr;
        if (tableIn(found, schema::registrations) == nullptr)
            result.registrations = {which, String(schema::registrations),
                                    definition(*schema::table(schema::registrations), style)};
    }
    return result;
}

} // namespace zv
