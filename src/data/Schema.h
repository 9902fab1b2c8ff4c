#pragma once

#include "data/Engine.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <span>

/// The schema of a school as data: it makes new databases, and checks those made elsewhere.
namespace zv::schema {

/// Table of the rows that stations have open: housekeeping that no person ever types, and that dies with its
/// station.
inline constexpr StringView registrations = u"RegistroActivo";

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
    int width = 0;            ///< Width of a text in characters; 0: unlimited.
    StringView refersTo = {}; ///< Referenced table. No foreign key is declared: nothing keeps the referenced
                              ///< row from being deleted.
    bool searched = false;    ///< Indexed, since rows are looked up by it.
    bool addedByUs =
        false; ///< Our own addition: no dialog names it, and a school made elsewhere need not have it.
};

/// Kind of key, the leading columns.
enum class Key {
    given,     ///< Unique, and each row brings its own.
    automatic, ///< Unique, and generated for a row that comes without it.
    repeated   ///< Not unique: rows are looked up by it, and several may share it.
};

enum class Use {
    named,      ///< The dialogs write rows and name their columns.
    positional, ///< The dialogs write rows without naming columns: these must be exactly the listed ones, in
                ///< order.
    read,       ///< The dialogs only read it.
    addedByUs   ///< Our own addition: a school made elsewhere need not have it.
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

/// The tables of a database. The deleted-records one has those of the live one but for the row registrations.
std::span<const Table> tables(Database which);
/// Lookup in the live and the entry database, without regard to case; nullptr if there is none.
const Table* table(StringView name);

/// A table of our own in the deleted-records database, made when it is first written.
struct ExtraTable {
    StringView name;
    std::array<StringView, 6> columns; ///< "" behind the last.
    StringView definition;             ///< Its DDL, the same for every engine.
};
/// Notes of the deletions.
inline constexpr ExtraTable recycleBinNotes{
    .name = u"RegistroPapelera",
    .columns = {u"Tabla", u"Fila", u"Momento", u"IDUsuario"},
    .definition = u"CREATE TABLE RegistroPapelera (Tabla VARCHAR(50) NOT NULL, Fila INTEGER NOT NULL, "
                  u"Momento VARCHAR(30), IDUsuario SMALLINT, PRIMARY KEY (Tabla, Fila))"};
/// Records of rows that were joined: what is needed to part them again.
inline constexpr ExtraTable joinRecords{
    .name = u"RegistroUnion",
    .columns = {u"Numero", u"Linea", u"Clase", u"Tabla", u"Columna", u"Texto"},
    .definition =
        u"CREATE TABLE RegistroUnion (Numero INTEGER NOT NULL, Linea INTEGER NOT NULL, Clase SMALLINT "
        u"NOT NULL, Tabla VARCHAR(64), Columna VARCHAR(64), Texto TEXT, PRIMARY KEY (Numero, Linea))"};
inline constexpr const ExtraTable* extraTables[] = {&recycleBinNotes, &joinRecords};

/// DDL of an empty database: its tables, and the indexes for the dialogs' lookups.
std::vector<String> definition(Database which, DdlStyle style);
/// DDL of one of its tables, without indexes and without what fills in automatic keys.
String definition(const Table& table, DdlStyle style);

struct Index {
    StringView column; ///< Its leading column, by which it is found.
    String definition;
};
/// The indexes of a table, but for its unique key's.
std::vector<Index> indexes(const Table& table, DdlStyle style);
/// Query of the table and the leading column of each index of a database.
StringView indexQuery(DdlStyle style);

} // namespace zv::schema
