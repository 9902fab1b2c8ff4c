#include "data/history/Undo.h"

#include "data/Statement.h"
#include "data/Transaction.h"
#include "data/history/Rows.h"
#include "runtime/Convert.h"

#include <algorithm>
#include <array>
#include <set>
#include <utility>

namespace zv::history {
namespace {

using Why = Obstacle::Why;

String conditionOf(const Scope& scope)
{
    String result = statement(u"Numero>={}", {scope.since});
    if (scope.opening != 0)
        result += statement(u" AND Apertura={}", {scope.opening});
    if (scope.save != 0)
        result += statement(u" AND Guardado={}", {scope.save});
    if (!scope.table.empty())
        result += u" AND " + ofRow(scope.table, scope.row);
    return result;
}

/// The rows of one key: as the database has them, and as the undo leaves them.
struct Rows {
    String table;
    String key;
    bool unique = true;
    std::vector<Fields> before;
    std::vector<Fields> now;
};

auto find(std::vector<Fields>& rows, const Fields& row)
{
    return std::ranges::find_if(rows, [&](const Fields& each) {
        return std::ranges::all_of(row, [&](const Field& field) {
            const Value* const value = valueOf(each, field.column);
            return value != nullptr && same(*value, field.value);
        });
    });
}

std::ptrdiff_t count(const std::vector<Fields>& rows, const Fields& row)
{
    return std::ranges::count_if(rows, [&](const Fields& each) { return same(each, row); });
}

/// Simulation of the undo on the rows that the entries name, from which the plan is taken: what is undone in
/// several steps becomes one.
class Undoing {
public:
    Undoing(HistoryConnection& centro, const Scope& scope)
        : centro_(centro), scope_(scope), entries_(entries(centro, conditionOf(scope), true))
    {
        for (const Entry& each : entries_)
            numbers_.insert(each.number);
    }

    Plan plan()
    {
        for (const Entry& each : entries_)
            undo(each);
        for (const Effect::Act act : {Effect::Act::remove, Effect::Act::setBack, Effect::Act::insert})
            for (const auto& [key, rows] : rows_)
                addEffects(rows, act);
        return std::move(plan_);
    }

private:
    void undo(const Entry& entry)
    {
        if (entry.kind == Kind::read || entry.kind == Kind::failed || entry.kind == Kind::missed)
            ++plan_.idle[entry.kind];
        else if (entry.kind == Kind::opaque)
            plan_.obstacles.push_back({.why = Why::notUnderstood, .entry = entry});
        else if (wroteRow(entry.kind) && entry.before.empty() && entry.after.empty())
            block(Why::erased, entry);
        else if (entry.kind == Kind::changed)
            undoChange(entry);
        else if (wroteRow(entry.kind) && scope_.column.empty())
            entry.kind == Kind::added ? undoAdded(entry) : undoRemoved(entry);
    }

    void undoChange(const Entry& entry)
    {
        const Fields was = fieldsIn(entry.before);
        const Fields is = fieldsIn(entry.after);
        Rows& rows = rowsOf(entry);
        auto row = find(rows.now, is);
        if (row == rows.now.end() && rows.unique)
            row = rows.now.begin();
        if (row == rows.now.end())
            return block(Why::rowGone, entry);
        for (Field& field : *row) {
            const Value* const written = valueOf(is, field.column);
            const Value* const old = valueOf(was, field.column);
            if (written == nullptr || old == nullptr || !isMeant(field.column))
                continue;
            if (same(field.value, *written))
                field.value = *old;
            else
                block(Why::writtenOver, entry, field);
        }
    }

    void undoAdded(const Entry& entry)
    {
        const Fields is = fieldsIn(entry.after);
        Rows& rows = rowsOf(entry);
        const auto row = find(rows.now, is);
        if (row != rows.now.end()) {
            rows.now.erase(row);
        } else if (rows.now.empty() || !rows.unique) {
            block(Why::rowGone, entry);
        } else {
            for (const Field& field : rows.now.front())
                if (const Value* written = valueOf(is, field.column); written && !same(*written, field.value))
                    block(Why::writtenOver, entry, field);
        }
    }

    void undoRemoved(const Entry& entry)
    {
        Rows& rows = rowsOf(entry);
        if (rows.unique && !rows.now.empty())
            return block(Why::rowThere, entry);
        Fields row;
        const Fields was = fieldsIn(entry.before);
        for (const String& column : centro_.columns(entry.table))
            if (const Value* value = valueOf(was, column))
                row.push_back({column, *value});
        rows.now.push_back(std::move(row));
    }

    bool isMeant(StringView column) const { return scope_.column.empty() || sameName(scope_.column, column); }

    Rows& rowsOf(const Entry& entry)
    {
        const auto [place, isNew] = rows_.try_emplace({entry.table, entry.row});
        Rows& rows = place->second;
        if (isNew) {
            const schema::Table* const table = schema::table(entry.table);
            rows.table = entry.table;
            rows.key = entry.row;
            rows.unique = table != nullptr && table->key != schema::Key::repeated;
            // Beside the history: nobody reads these texts.
            rows.before =
                history::rowsOf(*centro_.inner(), entry.table, centro_.columns(entry.table), entry.row);
            rows.now = rows.before;
        }
        return rows;
    }

    /// What stands over an entry is told once: an older entry of the same column meets the same.
    void block(Why why, const Entry& entry, const Field& field = {})
    {
        if (!blocked_.insert({entry.table, entry.row, lowerName(field.column)}).second)
            return;
        plan_.obstacles.push_back({.why = why,
                                   .entry = entry,
                                   .column = field.column,
                                   .stands = field.value,
                                   .by = why == Why::erased ? Author{} : whoWrote(why, entry, field.column)});
    }

    /// The newest entry behind this one that left the row, or the column, as it stands.
    Author whoWrote(Why why, const Entry& entry, StringView column) const
    {
        const auto left = [&](const Entry& later) {
            if (numbers_.contains(later.number))
                return false;
            if (why == Why::rowGone)
                return later.kind == Kind::removed;
            return later.kind == Kind::added || (later.kind == Kind::changed && why == Why::writtenOver &&
                                                 valueOf(fieldsIn(later.after), column) != nullptr);
        };
        Author result;
        forEach(
            centro_,
            statement(u"Numero>{} AND Tabla={} AND Fila={}",
                      {entry.number, textLiteral(entry.table), textLiteral(entry.row)}),
            [&](const Entry& later) {
                if (!left(later))
                    return true;
                result = {later.number, later.moment, openingOf(centro_, later.opening)};
                return false;
            },
            true);
        return result;
    }

    void addEffects(const Rows& rows, Effect::Act act)
    {
        if (rows.unique && rows.before.size() == 1 && rows.now.size() == 1) {
            if (act == Effect::Act::setBack)
                addDifference(rows, rows.before.front(), rows.now.front());
            return;
        }
        const bool removes = act == Effect::Act::remove;
        if (act == Effect::Act::setBack)
            return;
        std::vector<Fields> told;
        for (const Fields& row : removes ? rows.before : rows.now) {
            // Of rows that are alike a statement reaches all: where some are to stay, they come again.
            const std::ptrdiff_t was = count(rows.before, row);
            const std::ptrdiff_t is = count(rows.now, row);
            const std::ptrdiff_t times = is < was ? (removes ? was : is) : removes ? 0 : is - was;
            if (count(told, row) >= times)
                continue;
            told.push_back(row);
            plan_.effects.push_back({.act = act,
                                     .table = rows.table,
                                     .row = rows.key,
                                     .from = removes ? row : Fields(),
                                     .to = removes ? Fields() : row,
                                     .alone = rows.unique && rows.before.size() == 1});
        }
    }

    void addDifference(const Rows& rows, const Fields& before, const Fields& now)
    {
        Effect effect{.act = Effect::Act::setBack,
                      .table = rows.table,
                      .row = rows.key,
                      .from = {},
                      .to = {},
                      .alone = true};
        for (const Field& was : before)
            if (const Value* is = valueOf(now, was.column); is != nullptr && !same(*is, was.value)) {
                effect.from.push_back(was);
                effect.to.push_back({was.column, *is});
            }
        if (!effect.to.empty())
            plan_.effects.push_back(std::move(effect));
    }

    HistoryConnection& centro_;
    const Scope& scope_;
    std::vector<Entry> entries_;
    std::set<Long> numbers_;
    std::map<std::pair<String, String>, Rows> rows_;
    std::set<std::array<String, 3>> blocked_;
    Plan plan_;
};

String insertOf(const Effect& effect)
{
    String columns;
    String values;
    for (const Field& each : effect.to) {
        columns += (columns.empty() ? u"" : u",") + each.column;
        values += (values.empty() ? u"" : u",") + literal(each.value);
    }
    return u"INSERT INTO " + effect.table + u" (" + columns + u") VALUES (" + values + u")";
}

String statementOf(const Effect& effect)
{
    switch (effect.act) {
    case Effect::Act::setBack:
        return u"UPDATE " + effect.table + u" SET " + textOf(effect.to) + u" WHERE " + effect.row;
    case Effect::Act::remove:
        return u"DELETE FROM " + effect.table + u" WHERE " +
               (effect.alone ? effect.row : conditionOf(effect.from));
    case Effect::Act::insert:
        break;
    }
    return insertOf(effect);
}

} // namespace

Plan planOf(HistoryConnection& centro, const Scope& scope) { return Undoing(centro, scope).plan(); }

Plan undo(HistoryConnection& centro, const Scope& scope, const Opening& by, const std::function<void()>& also)
{
    const ActGuard act(centro, by);
    Transaction transaction(centro);
    const Appending lock(centro);
    Plan plan = planOf(centro, scope);
    std::set<String> run;
    for (const Effect& each : plan.effects)
        // One statement removes all rows that are alike.
        if (const String text = statementOf(each); each.act != Effect::Act::remove || run.insert(text).second)
            centro.Execute(text);
    // Within the transaction: a station that dies leaves all of it or nothing.
    centro.dialogAtRest();
    if (also)
        also();
    transaction.commit();
    return plan;
}

String ofRow(StringView table, StringView row)
{
    String result = u"Tabla=" + textLiteral(table);
    if (!row.empty())
        result += u" AND (Fila=" + textLiteral(row) + u" OR Fila LIKE " +
                  textLiteral(String(row) + u" AND %") + u")";
    return result;
}

Long firstSince(Connection& centro, StringView moment)
{
    const RecordsetPtr rows = centro.executeNative(
        u"SELECT MIN(Numero) AS Primero FROM HistorialAsiento WHERE Momento>=" + textLiteral(moment));
    const Value first = rows->Fields(u"Primero");
    return first.isNull() ? 0 : CLng(first);
}

std::optional<Scope> lastWriteOf(Connection& centro, StringView table, StringView row, StringView column)
{
    std::optional<Scope> result;
    forEach(
        centro, ofRow(table, row),
        [&](const Entry& each) {
            if (!wroteRow(each.kind) ||
                (!column.empty() && (each.kind != Kind::changed || !valueOf(fieldsIn(each.after), column))))
                return true;
            result = Scope{.save = each.save,
                           .since = each.save == 0 ? each.number : 0,
                           .table = String(table),
                           .row = String(row),
                           .column = String(column)};
            return false;
        },
        true);
    return result;
}

Opening openingOf(Connection& centro, Long number)
{
    Opening result;
    if (number == 0)
        return result;
    forEach(centro, statement(u"Numero={}", {number}), [&](const Entry& entry) {
        const Fields fields = fieldsIn(entry.after);
        const auto text = [&](StringView column) {
            const Value* const value = valueOf(fields, column);
            return value == nullptr || value->isNull() ? String() : CStr(*value);
        };
        const auto whole = [&](StringView column) {
            const Value* const value = valueOf(fields, column);
            return value == nullptr || value->isNull() ? Long{0} : CLng(*value);
        };
        result = {.dialog = text(u"Dialogo"),
                  .row = whole(u"Fila"),
                  .creates = whole(u"Nueva") != 0,
                  .user = static_cast<Integer>(whole(u"IDUsuario")),
                  .userName = text(u"Usuario"),
                  .station = text(u"Puesto")};
        return false;
    });
    return result;
}

} // namespace zv::history
