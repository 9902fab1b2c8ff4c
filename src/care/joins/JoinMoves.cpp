#include "care/joins/JoinMoves.h"

#include "data/Statement.h"
#include "data/history/Rows.h"
#include "data/history/Words.h"
#include "runtime/Convert.h"

#include <algorithm>
#include <tuple>
#include <unordered_map>
#include <unordered_set>

namespace zv::care {
namespace {

using history::conditionOf;
using history::Fields;

bool holds(const std::vector<String>& names, StringView name)
{
    return std::ranges::any_of(names, [&](const String& each) { return sameName(each, name); });
}

bool isOfKey(const schema::Table& table, StringView column)
{
    return std::ranges::any_of(history::keyColumns(table),
                               [&](const schema::Column& each) { return sameName(each.name, column); });
}

Fields referringTo(Fields row, StringView column, Long key)
{
    for (history::Field& each : row)
        if (sameName(each.column, column))
            each.value = key;
    return row;
}

/// What a row is, as a text: of any engine or record, each of which spells the columns its own way.
String identityOf(StringView table, Fields row)
{
    for (history::Field& each : row)
        each.column = history::nameOf(table, each.column);
    return conditionOf(row);
}

String equals(StringView column, Long key) { return String(column) + u"=" + decimalText(key); }

/// Calls back for each condition that finds some of the rows, and their number.
template <class Use>
void forSome(const Move& move, Use&& use)
{
    const String key(keyOf(definitionOf(move.table)));
    for (std::size_t first = 0; first < move.keys.size(); first += keysAtOnce) {
        const std::size_t last = std::min(first + keysAtOnce, move.keys.size());
        String list;
        for (std::size_t i = first; i < last; ++i)
            list += (list.empty() ? u"" : u",") + decimalText(move.keys[i]);
        use(statement(u"{} IN ({})", {key, list}), static_cast<Long>(last - first));
    }
}

Long count(Connection& base, const String& table, const String& condition)
{
    const RecordsetPtr rows =
        base.Execute(u"SELECT COUNT(*) AS Cuantas FROM " + table + u" WHERE " + condition);
    return CLng(rows->row().front());
}

void refer(Connection& base, const Move& move, Long key, const String& condition)
{
    base.Execute(u"UPDATE " + move.table + u" SET " + equals(move.column, key) + u" WHERE " + condition);
}

void remove(Connection& base, const Move& move, const Fields& row)
{
    base.Execute(u"DELETE FROM " + move.table + u" WHERE " + conditionOf(row));
}

/// Whether an UPDATE of the column moves the row: a key is never set (the history knows rows by it), and of
/// rows that are alike it would reach all.
bool canBeSet(const Move& move, const WholeRow& row)
{
    return !row.there && row.times == 1 && !isOfKey(definitionOf(move.table), move.column);
}

Move wholeRows(Connection& base, const FoundTable& table, StringView column, const Pair& pair)
{
    Move move{.table = table.name, .column = String(column), .keys = {}, .whole = {}};
    const auto read = [&](Long key) {
        return history::rowsOf(base, table.name, table.columns, equals(column, key));
    };
    std::unordered_map<String, std::size_t> places; // Of what the row will be.
    for (Fields& row : read(pair.goes)) {
        const auto [place, added] =
            places.emplace(identityOf(table.name, referringTo(row, column, pair.stays)), move.whole.size());
        if (added)
            move.whole.push_back({.fields = std::move(row)});
        else
            ++move.whole[place->second].times;
    }
    if (move.whole.empty())
        return move;
    for (const Fields& row : read(pair.stays))
        if (const auto place = places.find(identityOf(table.name, row)); place != places.end())
            move.whole[place->second].there = true;
    return move;
}

Move keyedRows(Connection& base, const schema::Table& table, StringView column, Long goes)
{
    Move move{.table = String(table.name), .column = String(column), .keys = {}, .whole = {}};
    const String key(keyOf(table));
    for (const RecordsetPtr rows = base.Execute(statement(u"SELECT {} FROM {} WHERE {} ORDER BY {}",
                                                          {key, move.table, equals(column, goes), key}));
         !rows->Eof(); rows->MoveNext())
        move.keys.push_back(CLng(rows->row().front()));
    return move;
}

/// What is to be moved of a table without a key, in an order of its own.
std::vector<std::tuple<String, Long, bool>> sorted(const Move& move)
{
    std::vector<std::tuple<String, Long, bool>> rows;
    for (const WholeRow& each : move.whole)
        rows.emplace_back(identityOf(move.table, each.fields), each.times, each.there);
    std::ranges::sort(rows);
    return rows;
}

} // namespace

bool same(const std::vector<Move>& one, const std::vector<Move>& other)
{
    return std::ranges::equal(one, other, [](const Move& a, const Move& b) {
        return sameName(a.table, b.table) && sameName(a.column, b.column) && a.keys == b.keys &&
               sorted(a) == sorted(b);
    });
}

namespace {

bool meet(const Move& earlier, Long stays, const Move& later, Long laterStays)
{
    if (!sameName(earlier.table, later.table))
        return false;
    if (earlier.keys.empty() != later.keys.empty())
        return true; // Of a key that refers itself: rare, and not looked at row by row.
    if (!earlier.keys.empty() && sameName(earlier.column, later.column))
        return std::ranges::any_of(later.keys,
                                   [&](Long key) { return std::ranges::binary_search(earlier.keys, key); });
    std::unordered_set<String> became;
    for (const WholeRow& each : earlier.whole)
        became.insert(identityOf(earlier.table, referringTo(each.fields, earlier.column, stays)));
    return std::ranges::any_of(later.whole, [&](const WholeRow& each) {
        return became.contains(identityOf(later.table, each.fields)) ||
               became.contains(identityOf(later.table, referringTo(each.fields, later.column, laterStays)));
    });
}

} // namespace

bool meet(const std::vector<Move>& earlier, Long stays, const std::vector<Move>& later, Long laterStays)
{
    return std::ranges::any_of(earlier, [&](const Move& each) {
        return std::ranges::any_of(later,
                                   [&](const Move& other) { return meet(each, stays, other, laterStays); });
    });
}

std::vector<Move> movesOf(Connection& base, const std::vector<FoundTable>& found, const Pair& pair)
{
    std::vector<Move> moves;
    for (const Reference& each : referencesTo(pair.node->table)) {
        const auto table = std::ranges::find_if(
            found, [&](const FoundTable& one) { return sameName(one.name, each.table->name); });
        if (table == found.end() || !holds(table->columns, each.column))
            continue;
        const bool keyed = each.table->key != schema::Key::repeated && each.table->keyColumns == 1 &&
                           holds(table->columns, keyOf(*each.table)) && !isOfKey(*each.table, each.column);
        Move move = keyed ? keyedRows(base, *each.table, each.column, pair.goes)
                          : wholeRows(base, *table, each.column, pair);
        if (!move.keys.empty() || !move.whole.empty())
            moves.push_back(std::move(move));
    }
    return moves;
}

Long mergedBy(const Move& move)
{
    Long merged = 0;
    for (const WholeRow& each : move.whole)
        merged += each.there ? each.times : each.times - 1;
    return merged;
}

void insertRow(Connection& base, StringView table, const Fields& row)
{
    String columns;
    String values;
    for (const history::Field& each : row) {
        const StringView comma = columns.empty() ? u"" : u",";
        columns.append(comma).append(each.column);
        values.append(comma).append(literal(each.value));
    }
    base.Execute(u"INSERT INTO " + String(table) + u" (" + columns + u") VALUES (" + values + u")");
}

void carryOut(Connection& base, const Move& move, const Pair& pair)
{
    for (const WholeRow& each : move.whole) {
        if (canBeSet(move, each))
            continue;
        remove(base, move, each.fields);
        if (!each.there)
            insertRow(base, move.table, referringTo(each.fields, move.column, pair.stays));
    }
    const bool sets = !move.keys.empty() || std::ranges::any_of(move.whole, [&](const WholeRow& each) {
        return canBeSet(move, each);
    });
    if (sets)
        refer(base, move, pair.stays, equals(move.column, pair.goes));
}

Long reverse(Connection& base, const Move& move, const Pair& pair)
{
    Long left = 0;
    const String moved = equals(move.column, pair.stays) + u" AND ";
    forSome(move, [&](const String& some, Long rows) {
        left += rows - count(base, move.table, moved + some);
        refer(base, move, pair.goes, moved + some);
    });
    for (const WholeRow& each : move.whole) {
        const Fields now = referringTo(each.fields, move.column, pair.stays);
        const Long stand = count(base, move.table, conditionOf(now));
        if (stand == 0) {
            // Somebody removed what they had become.
            left += each.there ? each.times : 1;
            continue;
        }
        if (!each.there) {
            if (stand == 1 && canBeSet(move, each)) {
                refer(base, move, pair.goes, conditionOf(now));
                continue;
            }
            // One of them was moved; a statement removes all.
            remove(base, move, now);
            for (Long other = 1; other < stand; ++other)
                insertRow(base, move.table, now);
        }
        for (Long time = 0; time < each.times; ++time)
            insertRow(base, move.table, each.fields);
    }
    return left;
}

std::vector<String> collisions(Connection& base, const std::vector<Move>& moves, const Pair& pair)
{
    std::vector<String> found;
    for (const Move& move : moves) {
        const schema::Table& table = definitionOf(move.table);
        if (!isOfKey(table, move.column))
            continue;
        for (const WholeRow& each : move.whole) {
            const String key = history::keyOf(table, referringTo(each.fields, move.column, pair.stays));
            if (!each.there && !key.empty() && count(base, move.table, key) != 0)
                found.push_back(statement(
                    u"En {} ya hay una fila con {} que dice otra cosa que la que habría que mover ({}): "
                    u"decida cuál vale y quite la otra antes de unir.",
                    {move.table, key, history::shown(move.table, each.fields)}));
        }
    }
    return found;
}

} // namespace zv::care
