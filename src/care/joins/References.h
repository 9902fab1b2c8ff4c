#pragma once

#include "data/Connection.h"
#include "data/Schema.h"
#include "session/NodeTable.h"

#include <span>

namespace zv::care {

/// A column of the live database that names rows of a table by their key. The schema is the one list of them.
struct Reference {
    const schema::Table* table = nullptr;
    StringView column;
};
/// All columns that name rows of the table, in the order of the school's tables.
std::vector<Reference> referencesTo(StringView table);

/// Two rows of a node's list, by their keys, of which one is to come into the place of the other.
struct Pair {
    const ModuleNode* node = nullptr;
    Long stays = 0;
    Long goes = 0;
};

/// Composition: rows that are deleted and restored with the row that owns them.
struct PartOf {
    StringView whole;
    StringView table;
    StringView column;
};
std::span<const PartOf> parts();
/// Whether the table's rows are parts of others.
bool isPart(StringView table);

/// Referring rows of one table: how many, and the first few by name.
struct Referrer {
    StringView table;
    Long count = 0;
    std::vector<String> examples;
};

/// What becomes of the parts of a row.
enum class Parts {
    belong, ///< They are not among the references to it, but references to them are.
    refer   ///< They refer to it as other rows do.
};
/// Finds the references to a row, in the order of the school's tables. A table or column that a school made
/// elsewhere lacks has none.
std::vector<Referrer> referrers(Connection& centro, StringView table, Long key, Parts parts = Parts::belong);

/// The table of that name, which has to be one of the schema's; fails with tableMissing.
const schema::Table& definitionOf(StringView table);
/// Column of the key.
inline StringView keyOf(const schema::Table& table) { return table.columns().front().name; }
/// Number of the rows that hold the key in a column.
Long countOf(Connection& connection, StringView table, StringView column, Long key);
/// Display name of a row that is read: its first text, a person's name whole; else that of a row that it
/// refers to; else its key.
String nameOfRow(Connection& connection, const schema::Table& table, Recordset& row);
/// Display name of a row; "" if it is not there.
String nameOfRow(Connection& connection, StringView table, Long key);

} // namespace zv::care
