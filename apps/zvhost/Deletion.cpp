#include "zvhost/Deletion.h"

#include "data/Statement.h"
#include "runtime/Convert.h"
#include "zvhost/DeletionNotes.h"
#include "zvhost/Nodes.h"

#include <algorithm>
#include <map>

namespace zv::host {
namespace {

constexpr Long examplesShown = 3;

/// Composition: rows that are deleted and restored with the row that owns them.
struct PartOf {
    StringView whole;
    StringView table;
    StringView column;
};
constexpr PartOf parts[] = {{u"Banco", u"Sucursal", u"CodBanco"}};

bool isPart(StringView table, StringView whole)
{
    return std::ranges::any_of(parts, [&](const PartOf& each) {
        return sameName(each.table, table) && sameName(each.whole, whole);
    });
}

bool isPart(StringView table)
{
    return std::ranges::any_of(parts, [&](const PartOf& each) { return sameName(each.table, table); });
}

const schema::Table& definitionOf(StringView table)
{
    const schema::Table* found = schema::table(table);
    if (found == nullptr)
        throw RuntimeError(failure::tableMissing, u"La tabla " + String(table) + u" no es de este sistema.");
    return *found;
}

StringView keyOf(const schema::Table& table) { return table.columns().front().name; }

Long countOf(Connection& connection, StringView table, StringView column, Long key)
{
    const RecordsetPtr rows = connection.Execute(
        statement(u"SELECT COUNT(*) AS Cuantas FROM {} WHERE {}={}", {Value(table), Value(column), key}));
    return rows->Eof() ? 0 : CLng(rows->row().front());
}

String joined(const std::vector<String>& words)
{
    String text;
    for (const String& word : words)
        text += (text.empty() || word.empty() ? u"" : u" ") + word;
    return text;
}

/// Display name of a row: its first text, a person's name whole; else that of the row that it joins to the
/// one asked about; else its key.
class Namer {
public:
    explicit Namer(Connection& connection) : connection_(connection) {}

    String name(const schema::Table& table, Recordset& row, StringView askedAbout = {})
    {
        const auto text = [&](StringView column) {
            const auto found = std::ranges::find_if(
                table.columns(), [&](const schema::Column& each) { return sameName(each.name, column); });
            return found == table.columns().end() ? String() : field(row, found->name);
        };
        if (String person = joined({text(u"Nombre"), text(u"Apellido_1"), text(u"Apellido_2")});
            !person.empty())
            return person;
        for (const schema::Column& column : table.columns())
            if (column.type == schema::Type::text && !field(row, column.name).empty())
                return field(row, column.name);
        for (const schema::Column& column : table.columns())
            if (!column.refersTo.empty() && !sameName(column.refersTo, askedAbout))
                if (String other = nameOfKey(column.refersTo, field(row, column.name)); !other.empty())
                    return other;
        return u"número " + field(row, keyOf(table));
    }

private:
    static String field(Recordset& row, StringView column)
    {
        try {
            return String() + row.Fields(column);
        } catch (const RuntimeError&) {
            // Missing column: a school made elsewhere need not have every one.
            return {};
        }
    }

    String nameOfKey(StringView table, const String& key)
    {
        if (key.empty())
            return {};
        const schema::Table& target = definitionOf(table);
        const RecordsetPtr row = connection_.Execute(
            statement(u"SELECT * FROM {} WHERE {}={}", {Value(target.name), Value(keyOf(target)), key}));
        if (row->Eof())
            return {};
        for (const schema::Column& column : target.columns())
            if (column.type == schema::Type::text)
                return name(target, *row);
        return {};
    }

    Connection& connection_;
};

/// Counts the rows of a table that hold a key in one of these columns.
Referrer referring(Connection& centro, const schema::Table& table, const std::vector<StringView>& columns,
                   StringView target, Long key)
{
    Referrer found{table.name, 0, {}};
    for (const StringView column : columns) {
        const Long count = countOf(centro, table.name, column, key);
        found.count += count;
        if (count == 0 || std::ssize(found.examples) >= examplesShown)
            continue;
        Namer namer(centro);
        const RecordsetPtr rows = centro.Execute(
            statement(u"SELECT * FROM {} WHERE {}={}", {Value(table.name), Value(column), key}));
        for (; !rows->Eof() && std::ssize(found.examples) < examplesShown; rows->MoveNext())
            found.examples.push_back(namer.name(table, *rows, target));
    }
    return found;
}

void add(std::vector<Referrer>& all, Referrer found)
{
    if (found.count == 0)
        return;
    const auto earlier = std::ranges::find(all, found.table, &Referrer::table);
    if (earlier == all.end()) {
        all.push_back(std::move(found));
        return;
    }
    earlier->count += found.count;
    for (String& example : found.examples)
        if (std::ssize(earlier->examples) < examplesShown)
            earlier->examples.push_back(std::move(example));
}

void addReferrers(std::vector<Referrer>& all, Connection& centro, StringView table, Long key);

void addReferrersOfParts(std::vector<Referrer>& all, Connection& centro, const schema::Table& part,
                         StringView column, Long key)
{
    const RecordsetPtr rows = centro.Execute(statement(
        u"SELECT {} FROM {} WHERE {}={}", {Value(keyOf(part)), Value(part.name), Value(column), key}));
    for (; !rows->Eof(); rows->MoveNext())
        addReferrers(all, centro, part.name, CLng(rows->row().front()));
}

std::vector<StringView> columnsTo(const schema::Table& from, StringView table)
{
    std::vector<StringView> columns;
    for (const schema::Column& column : from.columns())
        if (sameName(column.refersTo, table))
            columns.push_back(column.name);
    return columns;
}

void addReferrers(std::vector<Referrer>& all, Connection& centro, StringView table, Long key)
{
    for (const schema::Table& each : schema::tables(Database::centro)) {
        const std::vector<StringView> columns = columnsTo(each, table);
        if (columns.empty())
            continue;
        if (isPart(each.name, table)) {
            addReferrersOfParts(all, centro, each, columns.front(), key);
            continue;
        }
        try {
            add(all, referring(centro, each, columns, table, key));
        } catch (const RuntimeError& error) {
            // Missing table or column: a school made elsewhere need not have what no dialog reads.
            if (error.number() != failure::tableMissing && error.number() != failure::columnMissing)
                throw;
        }
    }
}

void removeRow(Connection& connection, StringView table, StringView column, Long key)
{
    connection.Execute(statement(u"DELETE FROM {} WHERE {}={}", {Value(table), Value(column), key}));
}

/// Copies the rows with that value in a column, with the columns that the schema knows.
void copyRows(Connection& from, Connection& to, const schema::Table& table, StringView column, Long key)
{
    const RecordsetPtr rows =
        from.Execute(statement(u"SELECT * FROM {} WHERE {}={}", {Value(table.name), Value(column), key}));
    for (; !rows->Eof(); rows->MoveNext()) {
        String names;
        String values;
        for (const schema::Column& each : table.columns()) {
            const StringView comma = names.empty() ? u"" : u",";
            names.append(comma).append(each.name);
            values.append(comma).append(literal(rows->Fields(each.name)));
        }
        removeRow(to, table.name, keyOf(table), CLng(rows->Fields(keyOf(table))));
        to.Execute(
            statement(u"INSERT INTO {} ({}) VALUES ({})", {Value(table.name), Value(names), Value(values)}));
    }
}

/// Order of writes: the whole is copied before its parts and deleted after them, so that a part is never
/// without it.
void move(Connection& from, Connection& to, const schema::Table& table, Long key)
{
    copyRows(from, to, table, keyOf(table), key);
    for (const PartOf& part : parts)
        if (sameName(part.whole, table.name))
            copyRows(from, to, definitionOf(part.table), part.column, key);
    for (const PartOf& part : parts)
        if (sameName(part.whole, table.name))
            removeRow(from, part.table, part.column, key);
    removeRow(from, table.name, keyOf(table), key);
}

void requireFree(Connection& centro, Connection& borrado, const schema::Table& table, StringView column,
                 Long key)
{
    const RecordsetPtr rows = borrado.Execute(statement(
        u"SELECT {} FROM {} WHERE {}={}", {Value(keyOf(table)), Value(table.name), Value(column), key}));
    for (; !rows->Eof(); rows->MoveNext())
        if (countOf(centro, table.name, keyOf(table), CLng(rows->row().front())) != 0)
            throw RuntimeError(failure::keyExists,
                               u"Su número ya lo tiene otra fila de «" + String(nameOfTable(table.name)) +
                                   u"»: no se puede restaurar. Dela de alta de nuevo si la necesita.");
}

} // namespace

std::vector<Referrer> referrers(Connection& centro, StringView table, Long key)
{
    std::vector<Referrer> all;
    addReferrers(all, centro, table, key);
    return all;
}

String nameOfRow(Connection& centro, StringView table, Long key)
{
    const schema::Table& whole = definitionOf(table);
    const RecordsetPtr row = centro.Execute(
        statement(u"SELECT * FROM {} WHERE {}={}", {Value(whole.name), Value(keyOf(whole)), key}));
    return row->Eof() ? String() : Namer(centro).name(whole, *row);
}

std::vector<DeletedRow> deletedRows(Connection& borrado)
{
    std::vector<DeletedRow> found;
    Namer namer(borrado);
    for (const schema::Table& table : schema::tables(Database::borrado)) {
        const bool written = table.use == schema::Use::named || table.use == schema::Use::positional;
        if (!written || table.keyColumns != 1 || isPart(table.name) ||
            !table.columns().front().refersTo.empty())
            continue;
        const RecordsetPtr rows = borrado.Execute(
            statement(u"SELECT * FROM {} ORDER BY {}", {Value(table.name), Value(keyOf(table))}));
        for (; !rows->Eof(); rows->MoveNext()) {
            const std::vector<Value> values = rows->row();
            const bool whole = std::any_of(values.begin() + 1, values.end(),
                                           [](const Value& each) { return !each.isNull(); });
            if (whole)
                found.push_back(
                    {table.name, CLng(rows->Fields(keyOf(table))), namer.name(table, *rows), {}, 0});
        }
    }
    addNotes(borrado, found);
    std::ranges::stable_sort(found, std::ranges::greater(), &DeletedRow::moment);
    return found;
}

void moveToDeleted(School& school, StringView table, Long key)
{
    move(*school.centro, *school.borrado, definitionOf(table), key);
}

void restore(School& school, StringView table, Long key)
{
    const schema::Table& whole = definitionOf(table);
    requireFree(*school.centro, *school.borrado, whole, keyOf(whole), key);
    for (const PartOf& part : parts)
        if (sameName(part.whole, table))
            requireFree(*school.centro, *school.borrado, definitionOf(part.table), part.column, key);
    move(*school.borrado, *school.centro, whole, key);
    forgetNote(*school.borrado, whole.name, key);
}

} // namespace zv::host
