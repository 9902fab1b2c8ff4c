#pragma once

#include "data/Engine.h"

#include <array>
#include <functional>

namespace zv::care {

/// What a table holds, independent of the engine and of the order of its rows.
struct TableContents {
    Database database = Database::centro;
    String table; ///< In lower case.
    Long rows = 0;
    /// Sum of a hash of each row: the columns' names in alphabetical order with their values, numbers as
    /// digits.
    std::array<std::uint64_t, 4> digest = {};

    bool operator==(const TableContents&) const = default;
};

/// Reads every row of a school, but the registrations of rows, which belong to the stations and not to the
/// school. `engine` opened it.
std::vector<TableContents> contentsOf(const School& school, Engine& engine);

/// In which tables two schools differ, one line in Spanish for each; tables without rows count as missing.
std::vector<String> differences(const std::vector<TableContents>& one,
                                const std::vector<TableContents>& other);

/// "base del centro", "base de borrados", "base de entrada".
StringView nameOf(Database which);

/// A column that is not ours.
struct ForeignPart {
    Database database = Database::centro;
    String table;
    String column;
    bool wholeTable = false; ///< Its table is not ours either.
};
std::vector<ForeignPart> foreignColumns(const School& school, Engine& engine);
/// A trigger, a view or an index that is not ours, in a SQLite database.
struct ForeignObject {
    Database database = Database::centro;
    String kind; ///< As in SQL, in small letters.
    String name;
    String line() const; ///< Spanish, for a person.
};
std::vector<ForeignObject> foreignObjects(Connection& base, Database which);
/// What a school has that we could not make elsewhere, one line in Spanish for each: tables that are not
/// ours, columns beside ours; of a file also triggers, views and indexes.
std::vector<String> foreignParts(const School& school, Engine& engine);

/// Copies the named columns of a table's rows into the same table of another database, and gives the number
/// of rows.
Long copyRows(Connection& from, Connection& to, const FoundTable& table);

/// Copies all rows into a school whose tables are made and empty; the same tables are left out as by
/// contentsOf(). The history's tables and the recycle bin's notes are made there where the first school has
/// them. `tell` is called with each table's name and rows.
void copyContents(const School& from, Engine& fromEngine, School& to, Engine& toEngine,
                  const std::function<void(StringView table, Long rows)>& tell);

} // namespace zv::care
