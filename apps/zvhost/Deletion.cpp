#include "zvhost/Deletion.h"

#include "data/Statement.h"
#include "runtime/Convert.h"
#include "zvhost/DeletionNotes.h"
#include "zvhost/Nodes.h"

#include <algorithm>

namespace zv::host {

using care::countOf;
using care::definitionOf;
using care::isPart;
using care::keyOf;
using care::PartOf;
using care::parts;

namespace {

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
    for (const PartOf& part : parts())
        if (sameName(part.whole, table.name))
            copyRows(from, to, definitionOf(part.table), part.column, key);
    for (const PartOf& part : parts())
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

std::vector<DeletedRow> deletedRows(Connection& borrado)
{
    std::vector<DeletedRow> found;
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
                    {table.name, CLng(rows->Fields(keyOf(table))), nameOfRow(borrado, table, *rows), {}, 0});
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
    for (const PartOf& part : parts())
        if (sameName(part.whole, table))
            requireFree(*school.centro, *school.borrado, definitionOf(part.table), part.column, key);
    move(*school.borrado, *school.centro, whole, key);
    forgetNote(*school.borrado, whole.name, key);
}

} // namespace zv::host
