#include "care/copies/Contents.h"

#include "care/copies/RowHash.h"
#include "data/DataError.h"
#include "data/Schema.h"
#include "data/Schools.h"
#include "data/Statement.h"
#include "data/Tokens.h"
#include "data/Transaction.h"
#include "data/history/Log.h"
#include "runtime/Convert.h"

#include <algorithm>
#include <map>

namespace zv::care {
namespace {

/// Rows of one INSERT: a server answers each statement, and a statement of a thousand rows is no faster.
constexpr std::size_t rowsAtOnce = 50;

bool isHistory(StringView table)
{
    return sameName(table.substr(0, history::ownPrefix.size()), history::ownPrefix);
}

const schema::ExtraTable* extraTable(StringView name)
{
    const auto* const found = std::ranges::find_if(
        schema::extraTables, [&](const schema::ExtraTable* each) { return sameName(each->name, name); });
    return found == std::end(schema::extraTables) ? nullptr : *found;
}

/// Columns that a table of ours may have; empty for a table that is not ours.
std::vector<String> ownColumns(Database which, StringView table)
{
    std::vector<String> result;
    for (const schema::Table& each : schema::tables(which))
        if (sameName(each.name, table))
            for (const schema::Column& column : each.columns())
                result.emplace_back(column.name);
    if (const schema::ExtraTable* extra = extraTable(table))
        for (const StringView column : extra->columns)
            if (!column.empty())
                result.emplace_back(column);
    return result;
}

bool holds(const std::vector<String>& names, StringView name)
{
    return std::ranges::any_of(names, [&](const String& each) { return sameName(each, name); });
}

String joined(const std::vector<String>& names)
{
    String result;
    for (const String& each : names)
        result += (result.empty() ? u"" : u", ") + each;
    return result;
}

using EachTable = std::function<void(Database which, const FoundTable& table)>;

/// Calls back for each table whose rows belong to the school.
void forEachTable(const School& school, Engine& engine, const EachTable& use)
{
    for (const Database which : everyDatabase)
        for (const FoundTable& table : engine.tables(*baseOf(school, which)))
            if (!sameName(table.name, schema::registrations))
                use(which, table);
}

RecordsetPtr rowsOf(Connection& base, const FoundTable& table)
{
    return base.executeNative(u"SELECT " + joined(table.columns) + u" FROM " + table.name);
}

/// Names that are not ours may be of any letters, or words of SQL.
FoundTable quotedWhereForeign(Database which, FoundTable table)
{
    if (isHistory(table.name))
        return table;
    const std::vector<String> ours = ownColumns(which, table.name);
    for (String& each : table.columns)
        if (!holds(ours, each))
            each = quotedName(each);
    if (ours.empty())
        table.name = quotedName(table.name);
    return table;
}

TableContents contentsOf(Connection& base, Database which, FoundTable table)
{
    std::ranges::sort(table.columns, {}, lowerName);
    TableContents result{.database = which, .table = lowerName(table.name)};
    RowHash hash(table.columns);
    const FoundTable asked = quotedWhereForeign(which, std::move(table));
    for (const RecordsetPtr rows = rowsOf(base, asked); !rows->Eof(); rows->MoveNext(), ++result.rows)
        hash.add(rows->row(), result.digest);
    return result;
}

} // namespace

StringView nameOf(Database which)
{
    switch (which) {
    case Database::borrado:
        return u"base de borrados";
    case Database::entrada:
        return u"base de entrada";
    case Database::centro:
        break;
    }
    return u"base del centro";
}

std::vector<TableContents> contentsOf(const School& school, Engine& engine)
{
    std::vector<TableContents> result;
    forEachTable(school, engine, [&](Database which, const FoundTable& table) {
        result.push_back(contentsOf(*baseOf(school, which), which, table));
    });
    return result;
}

std::vector<String> differences(const std::vector<TableContents>& one,
                                const std::vector<TableContents>& other)
{
    std::map<std::pair<Database, String>, std::array<TableContents, 2>> sides;
    for (const TableContents& each : one)
        sides[{each.database, each.table}][0] = each;
    for (const TableContents& each : other)
        sides[{each.database, each.table}][1] = each;
    std::vector<String> lines;
    for (const auto& [place, both] : sides) {
        const auto& [first, second] = both;
        if (first.rows != second.rows)
            lines.push_back(statement(u"La tabla {} de la {} tiene {} filas en un sitio y {} en el otro.",
                                      {place.second, nameOf(place.first), first.rows, second.rows}));
        else if (first.digest != second.digest)
            lines.push_back(statement(u"La tabla {} de la {} no tiene lo mismo en los dos sitios.",
                                      {place.second, nameOf(place.first)}));
    }
    return lines;
}

std::vector<ForeignPart> foreignColumns(const School& school, Engine& engine)
{
    std::vector<ForeignPart> found;
    forEachTable(school, engine, [&](Database which, const FoundTable& table) {
        if (which == Database::centro && isHistory(table.name))
            return;
        const std::vector<String> ours = ownColumns(which, table.name);
        for (const String& each : table.columns)
            if (!holds(ours, each))
                found.push_back({which, table.name, each, ours.empty()});
    });
    return found;
}

String ForeignObject::line() const
{
    const StringView what = kind == u"trigger" ? u"un disparador"
                            : kind == u"view"  ? u"una vista"
                                               : u"un índice";
    return statement(u"La {} tiene {} que no es de este programa: {}.", {nameOf(database), what, name});
}

std::vector<ForeignObject> foreignObjects(Connection& base, Database which)
{
    std::vector<ForeignObject> found;
    const RecordsetPtr rows = base.executeNative(
        u"SELECT type, name FROM sqlite_schema WHERE type<>'table' AND sql IS NOT NULL ORDER BY rowid");
    for (; !rows->Eof(); rows->MoveNext()) {
        const std::vector<Value> row = rows->row();
        const String name = CStr(row[1]);
        // Our indexes are named by us.
        if (CStr(row[0]) != u"index" || !(name.starts_with(u"ix_") || isHistory(name)))
            found.push_back({which, CStr(row[0]), name});
    }
    return found;
}

std::vector<String> foreignParts(const School& school, Engine& engine)
{
    std::vector<String> lines;
    if (engine.ddl(*school.centro) == DdlStyle::sqlite)
        for (const Database which : everyDatabase)
            for (const ForeignObject& each : foreignObjects(*baseOf(school, which), which))
                lines.push_back(each.line());
    for (const ForeignPart& each : foreignColumns(school, engine)) {
        String line =
            each.wholeTable
                ? statement(u"La {} tiene una tabla que no es de este programa: {}.",
                            {nameOf(each.database), each.table})
                : statement(u"La tabla {} de la {} tiene una columna que no es de este programa: {}.",
                            {each.table, nameOf(each.database), each.column});
        if (lines.empty() || lines.back() != line)
            lines.push_back(std::move(line));
    }
    return lines;
}

namespace {

/// Bytes that are no UTF-8 are read as U+FFFD: where more texts have it than have its bytes, some would be
/// changed without a word.
void refuseBytes(Connection& from, const FoundTable& table, const std::map<std::size_t, Long>& replaced)
{
    for (const auto& [column, rows] : replaced) {
        const RecordsetPtr genuine = from.executeNative(
            statement(u"SELECT COUNT(*) AS n FROM {} WHERE instr(CAST({} AS BLOB), x'EFBFBD')>0",
                      {table.name, table.columns[column]}));
        if (CLng(genuine->Fields(u"n")) != rows)
            throw RuntimeError(failure::otherData,
                               statement(u"en la columna {} hay letras que no están en UTF-8: corríjalas.",
                                         {table.columns[column]}));
    }
}

} // namespace

Long copyRows(Connection& from, Connection& to, const FoundTable& table)
{
    constexpr char16_t replacement = 0xFFFD;
    std::map<std::size_t, Long> replaced; // Rows with it, by column.
    const String head = u"INSERT INTO " + table.name + u" (" + joined(table.columns) + u") VALUES ";
    Long count = 0;
    String values;
    std::size_t waiting = 0;
    const auto send = [&] {
        if (waiting > 0)
            to.executeNative(head + values);
        values.clear();
        waiting = 0;
    };
    for (const RecordsetPtr rows = rowsOf(from, table); !rows->Eof(); rows->MoveNext(), ++count) {
        values += waiting == 0 ? u"(" : u",(";
        const std::vector<Value> row = rows->row();
        for (std::size_t column = 0; column < row.size(); ++column) {
            values += (column == 0 ? u"" : u",") + literal(row[column]);
            if (const auto* text = row[column].as<String>();
                text != nullptr && text->find(replacement) != String::npos)
                ++replaced[column];
        }
        values += u")";
        if (++waiting == rowsAtOnce)
            send();
    }
    send();
    if (from.engine().name == u"SQLite")
        refuseBytes(from, table, replaced);
    return count;
}

namespace {

/// The same with a failure that names the table.
Long copyRowsTold(Connection& from, Connection& to, Database which, const FoundTable& table)
{
    try {
        return copyRows(from, to, table);
    } catch (const RuntimeError& error) {
        throw RuntimeError(error.number(),
                           statement(u"La tabla {} de la {} no se puede copiar: {} No se ha copiado nada: el "
                                     u"centro de partida está como estaba.",
                                     {table.name, nameOf(which), error.description()}));
    }
}

} // namespace

void copyContents(const School& from, Engine& fromEngine, School& to, Engine& toEngine,
                  const std::function<void(StringView table, Long rows)>& tell)
{
    const auto hasHere = [&](Database which, StringView name) {
        return std::ranges::any_of(toEngine.tables(*baseOf(to, which)),
                                   [&](const FoundTable& each) { return sameName(each.name, name); });
    };
    forEachTable(from, fromEngine, [&](Database which, const FoundTable& table) {
        Connection& base = *baseOf(to, which);
        if (const schema::ExtraTable* extra = extraTable(table.name);
            extra != nullptr && !hasHere(which, table.name))
            base.executeNative(extra->definition);
        // Only where it is there: a failure would end the transaction that the tables are read in.
        if (sameName(table.name, u"HistorialCabeza"))
            history::requireKnown(*from.centro);
        if (isHistory(table.name) && !hasHere(which, table.name))
            history::activate(base);
    });
    for (const Database which : everyDatabase) {
        Connection& base = *baseOf(to, which);
        Transaction transaction(base);
        if (which == Database::centro && hasHere(which, u"HistorialCabeza"))
            // Made with a row of its own, in the place of which comes that of the other school.
            base.executeNative(u"DELETE FROM HistorialCabeza");
        for (const FoundTable& table : fromEngine.tables(*baseOf(from, which)))
            if (!sameName(table.name, schema::registrations))
                tell(table.name, copyRowsTold(*baseOf(from, which), base, which, table));
        transaction.commit();
    }
}

} // namespace zv::care
