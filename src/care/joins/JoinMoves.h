#pragma once

#include "care/joins/References.h"
#include "data/Engine.h"
#include "data/history/Fields.h"

namespace zv::care {

/// Row of a table without a key of its own, as it was.
struct WholeRow {
    history::Fields fields;
    Long times = 1;     ///< How often it stood there.
    bool there = false; ///< One that is alike but for the column referred to the other row already.
};

/// The rows of a table that refer to the row that goes, by one column.
struct Move {
    String table;
    String column;
    std::vector<Long> keys;      ///< Of a table with a key: the rows' keys.
    std::vector<WholeRow> whole; ///< Of another.
};
bool same(const std::vector<Move>& one, const std::vector<Move>& other);

/// Whether a later join moved, or merged with others, rows that an earlier one had moved.
bool meet(const std::vector<Move>& earlier, Long stays, const std::vector<Move>& later, Long laterStays);

/// Reads what refers to the row that goes; `found` are the tables of that database.
std::vector<Move> movesOf(Connection& base, const std::vector<FoundTable>& found, const Pair& pair);
/// Of two rows that would be alike one is left: how many go.
Long mergedBy(const Move& move);
/// Makes the rows refer to the one that stays.
void carryOut(Connection& base, const Move& move, const Pair& pair);
/// Makes them refer again to the one that went, as far as they are as carryOut() left them. Gives the number
/// of those that are not.
Long reverse(Connection& base, const Move& move, const Pair& pair);

/// Rows of a table of pairs that would stand twice with different contents, a sentence each.
std::vector<String> collisions(Connection& base, const std::vector<Move>& moves, const Pair& pair);

/// Inserts a row by its columns' names.
void insertRow(Connection& base, StringView table, const history::Fields& row);

/// How many keys a condition names at most.
inline constexpr std::size_t keysAtOnce = 200;

} // namespace zv::care
