#pragma once

#include "data/Engine.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <span>

/// The tables of a school, written once, as data: what makes new databases and what checks those made
/// elsewhere.
namespace zv::schema {

enum class Type {
    integer,     ///< 16-bit signed.
    longInteger, ///< 32-bit signed.
    byte,        ///< 0 to 255.
    text,
    flag,   ///< Any whole number; 0 is false. True is written 1 or -1.
    decimal ///< A number with decimals.
};

struct Column {
    StringView name;
    Type type = Type::longInteger;
    int width = 0;            ///< Of a text, in characters; 0: without limit.
    StringView refersTo = {}; ///< The table whose key it holds. Nothing keeps the row there from vanishing.
    bool searched = false;    ///< Rows are looked for by it, so that it wants an index.
    bool addedByUs = false;   ///< No dialog names it; a school made elsewhere need not have it.
};

/// What stands in front of the other columns.
enum class Key {
    given,     ///< Each row brings its own, and no two are equal.
    automatic, ///< As above, and the database gives one to a row that comes without it.
    repeated   ///< Rows are found by it, and several may share it.
};

enum class Use {
    named,      ///< The dialogs write rows and name their columns.
    positional, ///< They write rows without naming the columns: these must be exactly the listed ones, in
                ///< order.
    read,       ///< They only read it.
    addedByUs   ///< They do not know it; a school made elsewhere need not have it.
};

inline constexpr std::size_t maxColumns = 14;

struct Table {
    StringView name;
    Use use = Use::read;
    Key key = Key::given;
    std::size_t keyColumns = 1; ///< Leading columns that form the key.
    std::array<Column, maxColumns> room = {};
    std::size_t count = 0;

    constexpr Table(StringView tableName, Use tableUse, Key tableKey, std::size_t leading,
                    std::initializer_list<Column> columnList)
        : name(tableName), use(tableUse), key(tableKey), keyColumns(leading), count(columnList.size())
    {
        std::ranges::copy(columnList, room.begin());
    }
    constexpr std::span<const Column> columns() const { return {room.data(), count}; }
};

/// The tables of a database. Those of deleted records are the live ones but for the row registrations.
std::span<const Table> tables(Database which);
/// A table of the live or the entry database by its name, without regard to case; nullptr if there is none.
const Table* table(StringView name);

/// The statements that make all tables of an empty database, and the indexes behind what the dialogs look
/// for.
std::vector<String> definition(Database which, DdlStyle style);

} // namespace zv::schema
