#include "data/SchemaCheck.h"

#include "data/Schema.h"
#include "runtime/Convert.h"

namespace zv {
namespace {

using schema::Column;
using schema::Table;
using schema::Use;

/// Collects what is found in one database.
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

void checkDatabase(Findings findings, const std::vector<FoundTable>& found, Database which)
{
    for (const Table& table : schema::tables(which)) {
        if (table.use == Use::addedByUs)
            continue;
        const auto match = std::ranges::find_if(
            found, [&](const FoundTable& each) { return sameName(each.name, table.name); });
        if (match == found.end())
            findings.add(u"falta la tabla {}.", {table.name});
        else
            checkColumns(findings, table, match->columns,
                         which == Database::centro && table.use == Use::positional);
    }
}

} // namespace

std::vector<String> checkSchool(const School& school, Engine& engine)
{
    std::vector<String> lines;
    checkDatabase({lines, u"Base del centro"}, engine.tables(*school.centro), Database::centro);
    checkDatabase({lines, u"Base de borrados"}, engine.tables(*school.borrado), Database::borrado);
    checkDatabase({lines, u"Base de entrada"}, engine.tables(*school.entrada), Database::entrada);
    return lines;
}

} // namespace zv
