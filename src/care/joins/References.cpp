#include "care/joins/References.h"

#include "data/DataError.h"
#include "data/Statement.h"
#include "runtime/Convert.h"

#include <algorithm>

namespace zv::care {
namespace {

constexpr Long examplesShown = 3;
constexpr PartOf wholesAndParts[] = {{u"Banco", u"Sucursal", u"CodBanco"}};

String joined(const std::vector<String>& words)
{
    String text;
    for (const String& word : words)
        text += (text.empty() || word.empty() ? u"" : u" ") + word;
    return text;
}

/// Display name of a row: its first text, a person's name whole; in a table without texts that of the row
/// that it joins to the one asked about; else its key.
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
        // A row that has a name of its own, left empty, is not called by another's.
        const bool named = std::ranges::any_of(
            table.columns(), [](const schema::Column& each) { return each.type == schema::Type::text; });
        for (const schema::Column& column : table.columns())
            if (!named && !column.refersTo.empty() && !sameName(column.refersTo, askedAbout))
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

/// Counts the rows of a table that hold a key in a column.
Referrer referring(Connection& centro, const schema::Table& table, StringView column, StringView target,
                   Long key)
{
    Referrer found{table.name, countOf(centro, table.name, column, key), {}};
    if (found.count == 0)
        return found;
    Namer namer(centro);
    const RecordsetPtr rows =
        centro.Execute(statement(u"SELECT * FROM {} WHERE {}={}", {Value(table.name), Value(column), key}));
    for (; !rows->Eof() && std::ssize(found.examples) < examplesShown; rows->MoveNext())
        found.examples.push_back(namer.name(table, *rows, target));
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

void addReferrers(std::vector<Referrer>& all, Connection& centro, StringView table, Long key, Parts parts);

void addReferrersOfParts(std::vector<Referrer>& all, Connection& centro, const schema::Table& part,
                         StringView column, Long key)
{
    const RecordsetPtr rows = centro.Execute(statement(
        u"SELECT {} FROM {} WHERE {}={}", {Value(keyOf(part)), Value(part.name), Value(column), key}));
    for (; !rows->Eof(); rows->MoveNext())
        addReferrers(all, centro, part.name, CLng(rows->row().front()), Parts::belong);
}

bool isPart(StringView table, StringView whole)
{
    return std::ranges::any_of(wholesAndParts, [&](const PartOf& each) {
        return sameName(each.table, table) && sameName(each.whole, whole);
    });
}

void addReferrers(std::vector<Referrer>& all, Connection& centro, StringView table, Long key, Parts parts)
{
    for (const Reference& each : referencesTo(table)) {
        if (parts == Parts::belong && isPart(each.table->name, table)) {
            addReferrersOfParts(all, centro, *each.table, each.column, key);
            continue;
        }
        try {
            add(all, referring(centro, *each.table, each.column, table, key));
        } catch (const RuntimeError& error) {
            // No dialog reads it.
            if (!isLacking(error))
                throw;
        }
    }
}

} // namespace

std::vector<Reference> referencesTo(StringView table)
{
    std::vector<Reference> found;
    for (const schema::Table& each : schema::tables(Database::centro))
        for (const schema::Column& column : each.columns())
            if (sameName(column.refersTo, table))
                found.push_back({&each, column.name});
    return found;
}

std::span<const PartOf> parts() { return wholesAndParts; }

bool isPart(StringView table)
{
    return std::ranges::any_of(wholesAndParts,
                               [&](const PartOf& each) { return sameName(each.table, table); });
}

std::vector<Referrer> referrers(Connection& centro, StringView table, Long key, Parts parts)
{
    std::vector<Referrer> all;
    addReferrers(all, centro, table, key, parts);
    return all;
}

const schema::Table& definitionOf(StringView table)
{
    const schema::Table* found = schema::table(table);
    if (found == nullptr)
        throw RuntimeError(failure::tableMissing, u"La tabla " + String(table) + u" no es de este sistema.");
    return *found;
}

Long countOf(Connection& connection, StringView table, StringView column, Long key)
{
    const RecordsetPtr rows = connection.Execute(
        statement(u"SELECT COUNT(*) AS Cuantas FROM {} WHERE {}={}", {Value(table), Value(column), key}));
    return rows->Eof() ? 0 : CLng(rows->row().front());
}

String nameOfRow(Connection& connection, const schema::Table& table, Recordset& row)
{
    return Namer(connection).name(table, row);
}

String nameOfRow(Connection& connection, StringView table, Long key)
{
    const schema::Table& whole = definitionOf(table);
    const RecordsetPtr row = connection.Execute(
        statement(u"SELECT * FROM {} WHERE {}={}", {Value(whole.name), Value(keyOf(whole)), key}));
    return row->Eof() ? String() : nameOfRow(connection, whole, *row);
}

} // namespace zv::care
