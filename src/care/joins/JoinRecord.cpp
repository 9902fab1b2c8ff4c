#include "care/joins/JoinRecord.h"

#include "data/DataError.h"
#include "data/Schema.h"
#include "data/Statement.h"
#include "runtime/Convert.h"
#include "runtime/Time.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <set>

namespace zv::care {
namespace {

using history::Fields;

/// What a line of the record is.
enum class Line : Integer {
    begun = 1, ///< The first one: who, when, which rows.
    done = 2,  ///< The same of a join that was carried out.
    gone = 3,
    liveKeys = 4,
    liveWhole = 5,
    deletedKeys = 6,
    deletedWhole = 7,
    forgotten = 9, ///< In the place of a whole row, which was erased.
    undone = 8 ///< In the place of the first: no other join gets its number, which somebody may have noted.
};

constexpr std::size_t linesAtOnce = 50;

Value valueIn(const Fields& fields, StringView column)
{
    const Value* const value = history::valueOf(fields, column);
    return value == nullptr ? Null() : *value;
}
Long numberIn(const Fields& fields, StringView column)
{
    const Value value = valueIn(fields, column);
    return value.isNull() ? 0 : CLng(value);
}
String textIn(const Fields& fields, StringView column) { return String() + valueIn(fields, column); }

/// Writer of a record's lines, several with one statement.
class Writer {
public:
    Writer(Connection& base, Long number, Long line) : base_(base), number_(number), line_(line) {}

    void add(Line kind, StringView table, StringView column, StringView text)
    {
        values_ +=
            (values_.empty() ? u"(" : u",(") +
            statement(u"{},{},{},{},{},{})", {number_, line_++, static_cast<Integer>(kind),
                                              textLiteral(table), textLiteral(column), textLiteral(text)});
        if (++waiting_ == linesAtOnce)
            send();
    }
    void add(const std::vector<Move>& moves, Line keys, Line whole)
    {
        for (const Move& move : moves) {
            for (std::size_t first = 0; first < move.keys.size(); first += keysAtOnce) {
                String list;
                for (std::size_t i = first; i < std::min(first + keysAtOnce, move.keys.size()); ++i)
                    list += (list.empty() ? u"" : u",") + decimalText(move.keys[i]);
                add(keys, move.table, move.column, list);
            }
            for (const WholeRow& each : move.whole) {
                Fields fields = {{u"Veces", each.times}, {u"Estaba", Long{each.there ? 1 : 0}}};
                fields.insert(fields.end(), each.fields.begin(), each.fields.end());
                add(whole, move.table, move.column, history::textOf(fields));
            }
        }
    }
    void send()
    {
        if (!values_.empty())
            base_.executeNative(
                u"INSERT INTO RegistroUnion (Numero, Linea, Clase, Tabla, Columna, Texto) VALUES " + values_);
        values_.clear();
        waiting_ = 0;
    }

private:
    Connection& base_;
    Long number_;
    Long line_;
    String values_;
    std::size_t waiting_ = 0;
};

Move& moveOf(std::vector<Move>& moves, const String& table, const String& column)
{
    if (moves.empty() || moves.back().table != table || moves.back().column != column)
        moves.push_back({.table = table, .column = column, .keys = {}, .whole = {}});
    return moves.back();
}

void addKeys(Move& move, const String& list)
{
    const std::string digits = toUtf8(list);
    const char* at = digits.data();
    const char* const end = at + digits.size();
    for (Long key = 0; at < end; ++at) {
        const auto [next, error] = std::from_chars(at, end, key);
        if (error != std::errc())
            throw RuntimeError(failure::otherData, u"El registro de una unión está estropeado.");
        move.keys.push_back(key);
        at = next;
    }
}

void addWhole(Move& move, const String& text)
{
    Fields fields = history::fieldsIn(text);
    if (fields.size() < 2)
        throw RuntimeError(failure::otherData, u"El registro de una unión está estropeado.");
    WholeRow row{.fields = {}, .times = CLng(fields[0].value), .there = CLng(fields[1].value) != 0};
    row.fields.assign(fields.begin() + 2, fields.end());
    move.whole.push_back(std::move(row));
}

const ModuleNode* nodeOf(StringView table)
{
    for (const ModuleNode& each : moduleNodes())
        if (sameName(each.table, table))
            return &each;
    return nullptr;
}

void readHead(JoinRecord& record, const String& table, const String& text)
{
    const Fields head = history::fieldsIn(text);
    record.pair = {
        .node = nodeOf(table), .stays = numberIn(head, u"Queda"), .goes = numberIn(head, u"Sobra")};
    record.name = textIn(head, u"Nombre");
    record.moment = textIn(head, u"Momento");
    record.reserved = numberIn(head, u"Reservada") != 0;
    record.by.user = static_cast<Integer>(numberIn(head, u"IDUsuario"));
    record.by.userName = textIn(head, u"Usuario");
    record.by.station = textIn(head, u"Puesto");
}

String headOf(const JoinRecord& record)
{
    return history::textOf({{u"Queda", record.pair.stays},
                            {u"Sobra", record.pair.goes},
                            {u"Nombre", record.name},
                            {u"Momento", momentNow()},
                            {u"Reservada", Long{record.reserved ? 1 : 0}},
                            {u"IDUsuario", record.by.user},
                            {u"Usuario", record.by.userName},
                            {u"Puesto", record.by.station}});
}

void readLine(JoinRecord& record, const std::vector<Value>& row)
{
    const auto kind = static_cast<Line>(CInt(row[1]));
    const String table = String() + row[2];
    const String column = String() + row[3];
    const String text = String() + row[4];
    switch (kind) {
    case Line::begun:
    case Line::done:
        record.done = kind == Line::done;
        return readHead(record, table, text);
    case Line::gone:
        record.gone = history::fieldsIn(text);
        return;
    case Line::liveKeys:
        return addKeys(moveOf(record.live, table, column), text);
    case Line::liveWhole:
        return addWhole(moveOf(record.live, table, column), text);
    case Line::deletedKeys:
        return addKeys(moveOf(record.deleted, table, column), text);
    case Line::deletedWhole:
        return addWhole(moveOf(record.deleted, table, column), text);
    case Line::forgotten:
        ++record.forgotten;
        return;
    case Line::undone:
        return;
    }
}

String keyIs(const Pair& pair) { return String(pair.node->key()) + u"=" + decimalText(pair.goes); }

bool hasTable(Connection& borrado)
{
    try {
        borrado.executeNative(u"SELECT MAX(Numero) AS Ultimo FROM RegistroUnion");
        return true;
    } catch (const RuntimeError& error) {
        if (error.number() != failure::tableMissing)
            throw;
        return false;
    }
}

void makeTable(Connection& borrado)
{
    if (hasTable(borrado))
        return;
    try {
        borrado.executeNative(schema::joinRecords.definition);
    } catch (const RuntimeError& error) {
        // Another station's first join may have made it meanwhile.
        if (hasTable(borrado))
            return;
        throw RuntimeError(error.number(),
                           u"No se puede hacer la tabla RegistroUnion en la base de borrados, "
                           u"en la que se anota lo que hace falta para deshacerlo: " +
                               error.description());
    }
}

} // namespace

Transaction writing(Connection& base, DdlStyle style)
{
    return Transaction([&base, style](StringView each) {
        base.executeNative(style == DdlStyle::sqlite && each == u"BEGIN" ? u"BEGIN IMMEDIATE" : each);
    });
}

std::vector<JoinRecord> joinRecords(Connection& borrado, Long number)
{
    std::vector<JoinRecord> found;
    try {
        const RecordsetPtr rows =
            borrado.executeNative(u"SELECT Numero, Clase, Tabla, Columna, Texto FROM RegistroUnion" +
                                  (number == 0 ? String() : u" WHERE Numero=" + decimalText(number)) +
                                  u" ORDER BY Numero DESC, Linea");
        for (; !rows->Eof(); rows->MoveNext()) {
            const std::vector<Value> row = rows->row();
            if (const Long at = CLng(row[0]); found.empty() || found.back().number != at)
                found.push_back({.number = at});
            readLine(found.back(), row);
        }
    } catch (const RuntimeError& error) {
        if (error.number() != failure::tableMissing)
            throw;
    }
    // What is undone has no rows any more; of a list that this version does not know nothing can be done.
    std::erase_if(found, [](const JoinRecord& each) { return each.pair.node == nullptr; });
    return found;
}

Long begin(Connection& borrado, DdlStyle style, JoinRecord record)
{
    makeTable(borrado);
    const schema::Table& table = definitionOf(record.pair.node->table);
    Transaction transaction = writing(borrado, style);
    const Value last =
        borrado.executeNative(u"SELECT MAX(Numero) AS Ultimo FROM RegistroUnion")->row().front();
    record.number = last.isNull() ? 1 : CLng(last) + 1;
    record.reserved = countOf(borrado, table.name, keyOf(table), record.pair.goes) == 0;
    if (record.reserved)
        insertRow(borrado, table.name, {{String(keyOf(table)), record.pair.goes}});
    Writer lines(borrado, record.number, 0);
    lines.add(Line::begun, table.name, u"", headOf(record));
    lines.add(Line::gone, table.name, u"", history::textOf(record.gone));
    lines.add(record.live, Line::liveKeys, Line::liveWhole);
    lines.send();
    transaction.commit();
    return record.number;
}

void end(Connection& borrado, Long number, const std::vector<Move>& deleted)
{
    const Value last = borrado
                           .executeNative(u"SELECT MAX(Linea) AS Ultima FROM RegistroUnion WHERE Numero=" +
                                          decimalText(number))
                           ->row()
                           .front();
    Writer lines(borrado, number, last.isNull() ? 1 : CLng(last) + 1);
    lines.add(deleted, Line::deletedKeys, Line::deletedWhole);
    lines.send();
    borrado.executeNative(statement(u"UPDATE RegistroUnion SET Clase={} WHERE Numero={} AND Linea=0",
                                    {static_cast<Integer>(Line::done), number}));
}

void drop(Connection& borrado, const JoinRecord& record)
{
    if (record.reserved && isBare(borrado, record.pair))
        borrado.Execute(u"DELETE FROM " + String(record.pair.node->table) + u" WHERE " + keyIs(record.pair));
    borrado.executeNative(
        statement(u"DELETE FROM RegistroUnion WHERE Numero={} AND Linea>0", {record.number}));
    borrado.executeNative(statement(u"UPDATE RegistroUnion SET Clase={}, Texto='' WHERE Numero={}",
                                    {static_cast<Integer>(Line::undone), record.number}));
}

void replaceKept(Connection& borrado, Long number, StringView text, StringView with)
{
    borrado.executeNative(statement(u"UPDATE RegistroUnion SET Texto=REPLACE(Texto,{},{}) WHERE Numero={}",
                                    {textLiteral(text), textLiteral(with), number}));
}

namespace {

using Concerns = std::function<bool(Long number, StringView table, const Fields& row)>;

Long forget(Connection& borrado, bool forgets, const Concerns& concerns)
{
    if (!hasTable(borrado))
        return 0;
    std::vector<std::pair<Long, Long>> found;
    for (const RecordsetPtr rows = borrado.executeNative(
             statement(u"SELECT Numero, Linea, Tabla, Texto FROM RegistroUnion WHERE Clase IN ({},{})",
                       {static_cast<Integer>(Line::liveWhole), static_cast<Integer>(Line::deletedWhole)}));
         !rows->Eof(); rows->MoveNext()) {
        const std::vector<Value> row = rows->row();
        if (concerns(CLng(row[0]), String() + row[2], history::fieldsIn(String() + row[3])))
            found.emplace_back(CLng(row[0]), CLng(row[1]));
    }
    if (forgets)
        for (const auto& [number, line] : found)
            borrado.executeNative(
                statement(u"UPDATE RegistroUnion SET Clase={}, Texto='' WHERE Numero={} AND Linea={}",
                          {static_cast<Integer>(Line::forgotten), number, line}));
    return static_cast<Long>(found.size());
}

} // namespace

Long keptAbout(Connection& borrado, const schema::Table& table, Long key, bool forgets)
{
    return forget(borrado, forgets, [&](Long, StringView name, const Fields& row) {
        return std::ranges::any_of(definitionOf(name).columns(), [&](const schema::Column& each) {
            const bool names = sameName(each.refersTo, table.name) ||
                               (sameName(name, table.name) && sameName(each.name, keyOf(table)));
            const Value* value = names ? history::valueOf(row, each.name) : nullptr;
            return value != nullptr && history::same(*value, Value(key));
        });
    });
}

Long keptBefore(Connection& borrado, StringView moment, bool forgets)
{
    std::set<Long> numbers;
    for (const JoinRecord& each : joinRecords(borrado))
        if (each.moment < moment)
            numbers.insert(each.number);
    return forget(borrado, forgets,
                  [&](Long number, StringView, const Fields&) { return numbers.contains(number); });
}

bool isBare(Connection& borrado, const Pair& pair)
{
    const RecordsetPtr rows =
        borrado.Execute(u"SELECT * FROM " + String(pair.node->table) + u" WHERE " + keyIs(pair));
    if (rows->Eof())
        return false;
    return std::ranges::count_if(rows->row(), [](const Value& each) { return !each.isNull(); }) == 1;
}

} // namespace zv::care
