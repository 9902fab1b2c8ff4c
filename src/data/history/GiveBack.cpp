// The way back of what a dialog lost: only where nothing newer stands there.
#include "data/Statement.h"
#include "data/Transaction.h"
#include "data/history/Losses.h"
#include "runtime/Convert.h"

#include <algorithm>

namespace zv::history {
namespace {

void insert(Connection& centro, const schema::Table& table, const Fields& row)
{
    String names;
    String values;
    for (const Field& each : row) {
        const StringView comma = names.empty() ? u"" : u",";
        names.append(comma).append(each.column);
        values.append(comma).append(literal(each.value));
    }
    centro.Execute(
        statement(u"INSERT INTO {} ({}) VALUES ({})", {Value(table.name), Value(names), Value(values)}));
}

/// Key for a new row: one above the greatest.
Long nextKey(Connection& centro, const schema::Table& table)
{
    const RecordsetPtr rows = centro.Execute(statement(
        u"SELECT MAX({}) AS Maximo FROM {}", {Value(table.columns().front().name), Value(table.name)}));
    const Value greatest = rows->row().front();
    return greatest.isNull() ? 1 : CLng(greatest) + 1;
}

void insertAnew(Connection& centro, const schema::Table& table, Fields row)
{
    const StringView key = table.columns().front().name;
    std::erase_if(row, [&](const Field& each) { return sameName(each.column, key); });
    row.insert(row.begin(), {String(key), nextKey(centro, table)});
    insert(centro, table, row);
}

bool isNothing(const Value& value)
{
    const auto* text = value.as<String>();
    return value.isNull() || (text != nullptr ? text->empty() : same(value, Value(Long{0})));
}

/// Sets the fields that are still as the dialog left them; `left` has no field of a row that was not there.
void setFields(Connection& centro, const schema::Table& table, StringView row, const Fields& now,
               const Fields& wanted, const Fields& left, GivenBack& result)
{
    Fields fields;
    for (const Field& each : wanted) {
        const Value* stands = valueOf(now, each.column);
        const Value* was = valueOf(left, each.column);
        if (stands != nullptr && same(*stands, each.value))
            continue;
        if (stands != nullptr && (was != nullptr ? same(*stands, *was) : isNothing(*stands)))
            fields.push_back(each);
        else
            ++result.newer;
    }
    if (fields.empty())
        return;
    centro.Execute(
        statement(u"UPDATE {} SET {} WHERE {}", {Value(table.name), Value(textOf(fields)), Value(row)}));
    result.back += static_cast<Long>(fields.size());
}

/// Condition that finds what stands in the place of a row that went: a note has another key by then, and is
/// known by pupil, section and question.
String placeOf(const schema::Table& table, const Loss& loss)
{
    Fields place;
    if (sameName(table.name, u"ConsejoOrientador_Nota"))
        for (const StringView each : {u"codAlumno", u"codSeccion", u"codConsejoOrientador"})
            if (const Value* value = valueOf(loss.whole, each))
                place.push_back({String(each), *value});
    return place.empty() ? loss.row : conditionOf(place);
}

void giveRowBack(Connection& centro, const schema::Table& table, const Loss& loss, GivenBack& result)
{
    const String place = placeOf(table, loss);
    if (const std::optional<Fields> now = rowNow(centro, table, place)) {
        setFields(centro, table, place, *now, loss.was, {}, result);
        return;
    }
    if (place != loss.row && rowNow(centro, table, loss.row))
        insertAnew(centro, table, loss.whole);
    else
        insert(centro, table, loss.whole);
    result.back += static_cast<Long>(loss.was.size());
}

void giveBack(Connection& centro, const Loss& loss, GivenBack& result)
{
    const schema::Table& table = *schema::table(loss.table);
    if (loss.kind == Loss::Kind::nowhere && loss.anew) {
        insertAnew(centro, table, loss.whole);
        result.back += static_cast<Long>(loss.was.size());
        return;
    }
    const std::optional<Fields> now = rowNow(centro, table, loss.row);
    if (!loss.whole.empty()) {
        giveRowBack(centro, table, loss, result);
        return;
    }
    if (!now) {
        result.newer += static_cast<Long>(loss.was.size());
        return;
    }
    const Long before = result.back;
    setFields(centro, table, loss.row, *now, loss.was, loss.is, result);
    // What was written over it was to be a row of its own, and becomes one.
    if (loss.anew && result.back != before)
        insertAnew(centro, table, *now);
}

} // namespace

GivenBack giveBack(Connection& centro, const std::vector<Loss>& losses)
{
    GivenBack result;
    Transaction transaction(centro);
    for (const Loss& each : losses)
        giveBack(centro, each, result);
    transaction.commit();
    return result;
}

} // namespace zv::history
