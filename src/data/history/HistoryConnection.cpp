#include "data/history/HistoryConnection.h"

#include "data/Cursor.h"
#include "data/DataError.h"
#include "data/Dialect.h"
#include "data/Schema.h"
#include "data/Statement.h"
#include "data/Tokens.h"
#include "data/history/Rows.h"
#include "runtime/Convert.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <set>
#include <utility>

namespace zv::history {
namespace {

/// Table whose texts are stored enciphered: who reads one is noted.
constexpr StringView enciphered = u"Enfermedad";
constexpr StringView encipheredKey = u"IDEnfermedad";
/// Notes that wait are bounded: a database that cannot be written for a day must not fill the memory.
constexpr std::size_t mostPending = 1000;

/// The history's tables are not there any more.
struct TablesGone {};

bool isOneOf(StringView word, std::initializer_list<StringView> words)
{
    return std::ranges::any_of(words, [&](StringView each) { return sameName(word, each); });
}

StringView firstWord(StringView statement)
{
    const Token first = Tokens(statement).next();
    return statement.substr(first.start, first.length);
}

bool isOwn(StringView table)
{
    return table.size() >= ownPrefix.size() && sameName(table.substr(0, ownPrefix.size()), ownPrefix);
}

/// Key of the table; nullptr for one of which it is not known.
const schema::Table* keyed(StringView table) { return schema::table(table); }

bool setsKey(const Write& write)
{
    return std::ranges::any_of(keyColumns(*keyed(write.table)), [&](const schema::Column& each) {
        return valueOf(write.values, each.name) != nullptr;
    });
}

/// Begins to append; where the tables have gone, TablesGone.
Appending appendingTo(Connection& centro)
{
    try {
        return Appending(centro);
    } catch (const DataError& error) {
        if (error.number() == failure::tableMissing)
            throw TablesGone();
        throw;
    }
}

String openingText(const Opening& opening)
{
    return textOf({{u"Dialogo", opening.dialog},
                   {u"Fila", opening.row},
                   {u"Nueva", opening.creates},
                   {u"IDUsuario", opening.user},
                   {u"Usuario", opening.userName},
                   {u"Puesto", opening.station}});
}

} // namespace

bool isSavedInParts(StringView table)
{
    return std::ranges::any_of(savedInParts, [&](StringView each) { return sameName(each, table); });
}

HistoryConnection::HistoryConnection(ConnectionPtr inner, ColumnsOf columnsOf, Begins begins)
    : ConnectionDecorator(std::move(inner)), columnsOf_(std::move(columnsOf)),
      asleep_(begins == Begins::withADialog)
{}

RecordsetPtr HistoryConnection::Execute(StringView statement)
{
    return run(statement, [this](StringView each) { return inner()->Execute(each); });
}

RecordsetPtr HistoryConnection::executeNative(StringView statement)
{
    return run(statement, [this](StringView each) { return inner()->executeNative(each); });
}

RecordsetPtr HistoryConnection::run(StringView statement, const Run& run)
{
    if (asleep_ || missing_)
        return run(statement);
    const StringView verb = firstWord(statement);
    if (sameName(verb, u"select")) {
        RecordsetPtr rows = run(statement);
        noteReading(statement);
        return rows;
    }
    if (controlsTransaction(verb) || isOneOf(verb, {u"pragma", u"set", u"vacuum", u"analyze"}) ||
        (sameName(verb, u"with") && !names(statement, u"insert") && !names(statement, u"update") &&
         !names(statement, u"delete")))
        return run(statement);
    if (isOwn(writtenTable(statement)))
        return run(statement);
    const std::optional<Write> write = writeOf(statement);
    if (names(statement, schema::registrations))
        return write && write->kind == Write::Kind::remove ? runRelease(statement, run) : run(statement);
    if (!open_.empty() && write && write->kind != Write::Kind::remove)
        ++closing_.parts[open_.back().part].tried;
    // On its own, so that what is noted of an earlier statement does not make this one fail.
    flush();
    try {
        const bool understood = write && keyed(write->table) && !columns(write->table).empty() &&
                                (write->kind != Write::Kind::update || !setsKey(*write));
        RecordsetPtr result = understood ? runNoted(statement, *write, run) : runAlone(statement, run);
        noteFailed_ = false;
        return result;
    } catch (const TablesGone&) {
        missing_ = true;
        return run(statement);
    } catch (const DataError& error) {
        noteFailure(error, write);
        noteFailed_ |= error.number() == failure::locked;
        throw;
    }
}

/// The caller's transaction is ours as well; a rollback takes back what openings and saves were noted in it.
bool HistoryConnection::controlsTransaction(StringView verb)
{
    if (sameName(verb, u"begin")) {
        before_ = open_;
        callersTransaction_ = true;
        return true;
    }
    if (!isOneOf(verb, {u"commit", u"rollback", u"end"}))
        return false;
    if (sameName(verb, u"rollback") && before_.size() == open_.size())
        open_ = before_;
    callersTransaction_ = false;
    return true;
}

void HistoryConnection::inTransaction(StringView statement, const std::function<void()>& work)
{
    if (callersTransaction_)
        return work();
    const std::vector<Open> before = open_;
    const std::vector<Entry> waiting = pending_;
    try {
        inner()->executeNative(u"BEGIN");
        work();
        inner()->executeNative(u"COMMIT");
        return;
    } catch (...) {
        open_ = before;
        pending_ = waiting;
        try {
            inner()->executeNative(u"ROLLBACK");
        } catch (const RuntimeError&) {
            // Best effort: where the link was lost or nothing began, there is nothing to take back.
        }
        // Whoever sent a statement is told of that, and not of what was done around it.
        try {
            throw;
        } catch (const DataError& error) {
            throw DataError(error.number(), error.engineCode(), error.engineText(), statement);
        }
    }
}

RecordsetPtr HistoryConnection::runNoted(StringView statement, const Write& write, const Run& run)
{
    RecordsetPtr result;
    inTransaction(statement, [&] {
        Appending log = appendingTo(*inner());
        const bool inserts = write.kind == Write::Kind::insert;
        Rows before = inserts ? Rows() : rowsOf(write, write.where);
        // A row is found again by its key alone: others that have it must be known from before.
        if (write.kind == Write::Kind::update && keyed(write.table)->key == schema::Key::repeated)
            before = rowsAgain(write, before);
        result = run(statement);
        if (inserts) {
            addInserted(log, write, statement);
        } else if (!before.empty()) {
            // What a deletion found is gone.
            Rows after = write.kind == Write::Kind::update ? rowsAgain(write, before) : Rows();
            addDifferences(log, write, std::move(before), std::move(after));
        } else if (write.kind == Write::Kind::update) {
            add(log, {.kind = Kind::missed,
                      .table = String(keyed(write.table)->name),
                      .row = storable(write.where.substr(0, 250)),
                      .after = textOf(write.values)});
        }
        log.finish();
    });
    return result;
}

/// A statement that is not understood: kept as its text, in its transaction.
RecordsetPtr HistoryConnection::runAlone(StringView statement, const Run& run)
{
    RecordsetPtr result;
    inTransaction(statement, [&] {
        Appending log = appendingTo(*inner());
        result = run(statement);
        add(log, {.kind = Kind::opaque, .table = {}, .after = String(statement)});
        log.finish();
    });
    return result;
}

/// A dialog that releases its row has ended its save: both in one transaction, so that a station that dies
/// leaves a registration and a cut save, or neither.
RecordsetPtr HistoryConnection::runRelease(StringView statement, const Run& run)
{
    if (open_.empty() || open_.back().save == 0 || !open_.back().severalRows)
        return run(statement);
    RecordsetPtr result;
    try {
        inTransaction(statement, [&] {
            Appending log = appendingTo(*inner());
            add(log, {.kind = Kind::ended});
            open_.back().save = 0;
            open_.back().severalRows = false;
            result = run(statement);
            log.finish();
        });
    } catch (const TablesGone&) {
        return run(statement);
    }
    return result;
}

/// What is inserted without columns belongs to the table's, in their order; to "?" where they are not known
/// yet.
Fields HistoryConnection::named(const Write& write) const
{
    Fields result = write.values;
    const auto known = columns_.find(lowerName(write.table));
    for (std::size_t i = 0; i < result.size(); ++i)
        if (result[i].column.empty())
            result[i].column = known != columns_.end() && i < known->second.size() ? known->second[i] : u"?";
    return result;
}

HistoryConnection::Rows HistoryConnection::rowsOf(const Write& write, StringView condition)
{
    const schema::Table& table = *keyed(write.table);
    Rows result;
    for (Fields& fields : history::rowsOf(*inner(), table.name, columns(write.table), condition)) {
        String key = keyOf(table, fields);
        result.push_back({std::move(key), std::move(fields)});
    }
    return result;
}

/// The rows by their keys, as many at once as every engine takes in one condition.
HistoryConnection::Rows HistoryConnection::rowsAgain(const Write& write, const Rows& rows)
{
    constexpr std::size_t mostKeys = 500;
    Rows result;
    std::set<StringView> keys;
    String condition;
    for (const Row& each : rows) {
        if (keys.insert(each.key).second)
            condition += (condition.empty() ? u"(" : u" OR (") + each.key + u")";
        if (condition.empty() || (keys.size() % mostKeys != 0 && &each != &rows.back()))
            continue;
        std::ranges::move(rowsOf(write, std::exchange(condition, {})), std::back_inserter(result));
    }
    return result;
}

/// An inserted row is read back by the key that it brings: defaults and conversions are the database's. Of
/// several with that key it is one that has the inserted values, whichever.
void HistoryConnection::addInserted(Appending& log, const Write& write, StringView statement)
{
    const schema::Table& table = *keyed(write.table);
    const Fields given = named(write);
    const String key = keyOf(table, given);
    if (key.empty())
        return add(log, {.kind = Kind::opaque, .table = write.table, .after = String(statement)});
    const Rows after = rowsOf(write, key);
    if (after.empty())
        return;
    auto is = std::ranges::find_if(after, [&](const Row& row) {
        return std::ranges::all_of(given, [&](const Field& each) {
            const Value* value = valueOf(row.fields, each.column);
            return value != nullptr && same(*value, each.value);
        });
    });
    if (is == after.end())
        is = std::prev(after.end());
    add(log, {.kind = Kind::added, .table = String(table.name), .row = is->key, .after = textOf(is->fields)});
}

/// Adds an entry of the opening in hand, behind the opening's own if it is its first.
void HistoryConnection::add(Appending& log, Entry entry)
{
    if (open_.empty() || entry.opening != 0) {
        log.add(std::move(entry));
        return;
    }
    Open& top = open_.back();
    if (top.number == 0)
        top.number = log.add({.kind = Kind::opened,
                              .opening = log.next(),
                              .after = openingText(closing_.parts[top.part].opening)});
    entry.opening = top.number;
    if (entry.kind != Kind::read) {
        if (top.save == 0)
            top.save = log.next();
        entry.save = top.save;
        top.severalRows |= isSavedInParts(entry.table);
    }
    log.add(std::move(entry));
}

void HistoryConnection::addPending(Appending& log)
{
    for (Entry& each : std::exchange(pending_, {}))
        add(log, std::move(each));
}

void HistoryConnection::flush()
{
    // Nobody waits twice for a database that has just kept a note or a statement waiting.
    if (pending_.empty() || callersTransaction_ || missing_ || noteFailed_)
        return;
    try {
        inTransaction(u"", [&] {
            Appending log = appendingTo(*inner());
            addPending(log);
            log.finish();
        });
    } catch (const TablesGone&) {
        missing_ = true;
    } catch (const RuntimeError&) {
        // What cannot be noted now waits for a statement that succeeds: a note never makes a dialog fail.
        noteFailed_ = true;
    }
}

void HistoryConnection::noteReading(StringView query)
{
    if (!readsTexts(query, enciphered))
        return;
    const std::optional<Long> row = numberAskedFor(query, encipheredKey);
    wait({.kind = Kind::read,
          .table = String(enciphered),
          .row = row ? conditionOf({{String(encipheredKey), *row}}) : String()});
    flush();
}

void HistoryConnection::noteFailure(const DataError& error, const std::optional<Write>& write)
{
    const bool ours = write && keyed(write->table);
    // Nothing is asked of a database that has just failed.
    const bool known = ours && columns_.contains(lowerName(write->table));
    // A text may be why the statement failed: the note of it must not fail for the same.
    const Entry entry{.kind = Kind::failed,
                      .table = ours ? String(keyed(write->table)->name) : String(),
                      .row = write ? storable(write->where.substr(0, 250)) : String(),
                      .before =
                          storable(textOf({{u"Fallo", error.number()}, {u"Motivo", error.description()}})),
                      .after = storable(known ? textOf(named(*write)) : error.statement())};
    if (!open_.empty() && closing_.parts[open_.back().part].failed.size() < mostPending)
        closing_.parts[open_.back().part].failed.push_back(entry);
    wait(entry);
}

void HistoryConnection::wait(const Entry& note)
{
    if (pending_.size() == mostPending)
        pending_.erase(pending_.begin());
    pending_.push_back(note);
}

void HistoryConnection::dialogOpened(const Opening& opening)
{
    asleep_ = false;
    if (open_.empty()) {
        closing_ = {};
        noteFailed_ = false;
    }
    open_.push_back({.part = closing_.parts.size()});
    closing_.parts.push_back({.opening = opening});
    try {
        closing_.parts.back().headBefore = missing_ ? 0 : headOf(*inner()).number;
    } catch (const RuntimeError&) {
        // Nothing is told then of what others wrote meanwhile.
        closing_.parts.back().headBefore = std::numeric_limits<Long>::max();
    }
}

/// The end of a save that is one transaction of its writer's belongs to that.
void HistoryConnection::noteEnd()
{
    const Open& top = open_.back();
    if (!callersTransaction_) {
        // Of this save, also where it can only be written when another dialog is open.
        wait({.kind = Kind::ended, .opening = top.number, .save = top.save});
        return;
    }
    Appending log(*inner());
    add(log, {.kind = Kind::ended});
    log.finish();
}

void HistoryConnection::dialogAtRest()
{
    if (open_.empty())
        return;
    Open& top = open_.back();
    if (top.save != 0 && top.severalRows)
        noteEnd();
    flush();
    top.save = 0;
    top.severalRows = false;
}

void HistoryConnection::dialogClosed()
{
    if (open_.empty())
        return;
    noteFailed_ &= open_.size() > 1;
    dialogAtRest();
    closing_.parts[open_.back().part].number = open_.back().number;
    open_.pop_back();
    if (open_.empty())
        closed_ = std::exchange(closing_, {});
}

std::optional<HistoryConnection::Closed> HistoryConnection::takeClosed()
{
    return std::exchange(closed_, std::nullopt);
}

const std::vector<String>& HistoryConnection::columns(StringView table)
{
    const String name = lowerName(table);
    const auto known = columns_.find(name);
    return known != columns_.end() ? known->second : columns_[name] = columnsOf_(table);
}

HistoryConnection* historyOf(const ConnectionPtr& connection)
{
    return dynamic_cast<HistoryConnection*>(connection.get());
}

} // namespace zv::history
