#include "care/joins/Join.h"

#include "care/copies/Contents.h"
#include "care/joins/JoinRecord.h"
#include "data/DataError.h"
#include "data/Schools.h"
#include "data/Statement.h"
#include "data/history/HistoryConnection.h"
#include "data/history/Rows.h"
#include "data/history/Words.h"
#include "runtime/Convert.h"
#include "suite/Registrations.h"

#include <algorithm>

namespace zv::care {
namespace {

using history::Fields;

/// How often a join begins again because others wrote meanwhile.
constexpr int rounds = 20;

/// Others wrote rows that refer to the row, after the record was made.
struct Changed {};

/// The school without its history: what is read here nobody reads, and its engine knows it.
School bare(const School& school)
{
    School result = school;
    if (const auto* history = history::historyOf(school.centro))
        result.centro = history->inner();
    return result;
}

/// RAII guard of the registration of a row. Fails where somebody has it open.
class Registered {
public:
    Registered(Connection& centro, const Pair& pair, Long row, Integer user)
        : centro_(centro), form_(pair.node->dialog), row_(row)
    {
        if (const auto other = registerRowAlone(centro, thisStation(), form_, row, user))
            throw RuntimeError(failure::locked,
                               statement(u"La fila {} la tiene abierta {}: espere a que la cierre. No se ha "
                                         u"cambiado nada.",
                                         {row, heldBy(*other)}));
    }
    Registered(const Registered&) = delete;
    Registered& operator=(const Registered&) = delete;
    ~Registered()
    {
        try {
            unregisterRow(centro_, thisStation(), form_, row_);
        } catch (const RuntimeError&) {
            // Best effort: it goes stale with this station.
        }
    }

private:
    Connection& centro_;
    StringView form_;
    Long row_;
};

/// Work on a school's two databases.
class Work {
public:
    explicit Work(const Joiner& joiner)
        : school_(joiner.school), bare_(bare(joiner.school)), engine_(engineOf(joiner.url)), by_(joiner.by)
    {}

    Connection& live() { return *bare_.centro; }
    Connection& deleted() { return *bare_.borrado; }
    const std::vector<FoundTable>& liveTables() { return tables(liveTables_, live()); }
    const std::vector<FoundTable>& deletedTables() { return tables(deletedTables_, deleted()); }
    DdlStyle style() { return engine_.ddl(live()); }

    /// The row, or nothing.
    std::optional<Fields> row(const Pair& pair, Long key)
    {
        const auto table = std::ranges::find_if(
            liveTables(), [&](const FoundTable& each) { return sameName(each.name, pair.node->table); });
        if (table == liveTables().end())
            return std::nullopt;
        const std::vector<Fields> rows = history::rowsOf(live(), pair.node->table, table->columns,
                                                         String(pair.node->key()) + u"=" + decimalText(key));
        return rows.empty() ? std::nullopt : std::optional(rows.front());
    }

    /// The part of the live database: one transaction, which nobody else writes beside.
    void inLive(const Pair& pair, const std::function<void(Connection& centro)>& work)
    {
        const std::vector<FoundTable>& found = liveTables();
        const bool noted = history::historyOf(school_.centro) != nullptr && history::isActive(live());
        const ActGuard act(*school_.centro, by_);
        Transaction transaction = writing(*school_.centro, style());
        // Reads what is there when a lock is granted, and keeps others out of the gaps between rows.
        if (style() == DdlStyle::mariadb)
            live().executeNative(u"SET TRANSACTION ISOLATION LEVEL SERIALIZABLE");
        std::optional<history::Appending> head;
        // As all that write: the head first, and then the tables.
        if (noted)
            head.emplace(live());
        if (style() != DdlStyle::sqlite)
            lock(pair, found);
        work(*school_.centro);
        school_.centro->dialogAtRest();
        transaction.commit();
    }
    void inDeleted(const std::function<void()>& work)
    {
        Transaction transaction = writing(deleted(), style());
        work();
        transaction.commit();
    }

    std::vector<String> foreign(const Pair& pair);
    void settle(const JoinRecord& record);

private:
    const std::vector<FoundTable>& tables(std::vector<FoundTable>& known, Connection& base)
    {
        if (known.empty())
            known = engine_.tables(base);
        return known;
    }
    /// Rows of these tables may be read by others meanwhile, not written.
    void lock(const Pair& pair, const std::vector<FoundTable>& found)
    {
        std::vector<StringView> names = {pair.node->table};
        for (const Reference& each : referencesTo(pair.node->table))
            names.push_back(each.table->name);
        for (const FoundTable& each : found)
            if (std::ranges::any_of(names, [&](StringView name) { return sameName(name, each.name); }))
                live().executeNative(style() == DdlStyle::mariadb
                                         ? u"SELECT COUNT(*) FROM " + each.name + u" FOR UPDATE"
                                         : u"LOCK TABLE " + each.name + u" IN SHARE ROW EXCLUSIVE MODE");
    }
    bool holds(const ForeignPart& part, Long key);

    School& school_;
    School bare_;
    Engine& engine_;
    const Opening& by_;
    std::vector<FoundTable> liveTables_;
    std::vector<FoundTable> deletedTables_;
};

/// Whether a text is the number, or a list of numbers with it: "3", "3.00", "3, 5;7".
bool isOrLists(StringView text, Long key)
{
    bool found = false;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of(u",;| \t\r\n"), text.size());
        StringView word = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        const std::size_t point = word.find(u'.');
        if (point != StringView::npos && word.find_first_not_of(u'0', point + 1) == StringView::npos)
            word = word.substr(0, point);
        if (word.empty())
            continue;
        const std::optional<Long> number = numberIn(word);
        if (!number)
            return false;
        found |= *number == key;
    }
    return found;
}

/// Whether the column has the number in some row, as a number or in a text; where that cannot be read, it
/// might.
bool Work::holds(const ForeignPart& part, Long key)
{
    for (const StringView quote : {u"", u"\""})
        try {
            const String column = statement(u"CAST({}{}{} AS VARCHAR(4000))", {quote, part.column, quote});
            for (const RecordsetPtr rows =
                     baseOf(bare_, part.database)
                         ->executeNative(
                             statement(u"SELECT DISTINCT {} AS Texto FROM {}{}{} WHERE {} LIKE '%{}%'",
                                       {column, quote, part.table, quote, column, key}));
                 !rows->Eof(); rows->MoveNext())
                if (isOrLists(String() + rows->row().front(), key))
                    return true;
            return false;
        } catch (const DataError& error) {
            if (error.number() == failure::connectionLost)
                throw;
        }
    return true;
}

std::vector<String> Work::foreign(const Pair& pair)
{
    std::vector<String> found;
    for (const ForeignPart& each : foreignColumns(bare_, engine_))
        // A column without the number refers to another row, or to none.
        if (holds(each, pair.goes))
            found.push_back(
                statement(u"La columna {} de la tabla {} de la {} no es de este programa, y tiene el "
                          u"número {}: podría referirse a esta fila.",
                          {each.column, each.table, nameOf(each.database), pair.goes}));
    return found;
}

/// Brings record and deleted-records database to what the live one is.
void Work::settle(const JoinRecord& record)
{
    const std::optional<Fields> row = this->row(record.pair, record.pair.goes);
    const auto part = [&] {
        inDeleted([&] {
            for (const Move& each : record.deleted)
                reverse(deleted(), each, record.pair);
            drop(deleted(), record);
        });
    };
    if (!record.done) {
        // Gone, but not by this: somebody deleted it since.
        if (row || (record.reserved && !isBare(deleted(), record.pair)))
            return part();
        const std::vector<FoundTable>& found = deletedTables();
        inDeleted([&] {
            const std::vector<Move> moves = movesOf(deleted(), found, record.pair);
            for (const Move& each : moves)
                carryOut(deleted(), each, record.pair);
            end(deleted(), record.number, moves);
        });
    } else if (row && history::same(*row, record.gone)) {
        part();
    }
}

String nameOf(Connection& centro, const Pair& pair, Long key)
{
    for (const schema::Column& each : definitionOf(pair.node->table).columns())
        if (each.type == schema::Type::text && history::isSecret(pair.node->table, each.name))
            return u"número " + decimalText(key);
    return nameOfRow(centro, pair.node->table, key);
}

/// What the row that goes says and the other does not.
Fields lostOf(const Pair& pair, const Fields& stays, const Fields& goes)
{
    Fields lost;
    for (const history::Field& each : goes) {
        const Value* other = history::valueOf(stays, each.column);
        const auto* text = each.value.as<String>();
        const bool nothing = each.value.isNull() || (text != nullptr && text->empty());
        if (!nothing && !sameName(each.column, pair.node->key()) &&
            (other == nullptr || !history::same(*other, each.value)))
            lost.push_back(each);
    }
    return lost;
}

JoinPlan planOf(Work& work, const Pair& pair, std::vector<Move>* moves = nullptr)
{
    JoinPlan plan;
    const std::optional<Fields> stays = work.row(pair, pair.stays);
    const std::optional<Fields> goes = work.row(pair, pair.goes);
    for (const auto& [row, key] : {std::pair(&stays, pair.stays), {&goes, pair.goes}})
        if (!*row)
            plan.obstacles.push_back(
                statement(u"En «{}» no hay ninguna fila con el número {}.", {pair.node->title, key}));
    if (pair.stays == pair.goes)
        plan.obstacles.emplace_back(u"Son la misma fila.");
    if (!plan.obstacles.empty())
        return plan;
    plan.stays = nameOf(work.live(), pair, pair.stays);
    plan.goes = nameOf(work.live(), pair, pair.goes);
    plan.moves = referrers(work.live(), pair.node->table, pair.goes, Parts::refer);
    plan.lost = lostOf(pair, *stays, *goes);
    std::vector<Move> found = movesOf(work.live(), work.liveTables(), pair);
    for (const Move& each : found)
        plan.merged += mergedBy(each);
    addKind(plan, pair, *stays, *goes);
    if (sameName(pair.node->table, u"Banco"))
        addBanks(plan, work.live(), pair, *stays, *goes);
    for (const auto& lines : {collisions(work.live(), found, pair), work.foreign(pair)})
        plan.obstacles.insert(plan.obstacles.end(), lines.begin(), lines.end());
    if (moves != nullptr)
        *moves = std::move(found);
    return plan;
}

/// Deletes the row that goes when nothing refers to it any more. Fails with Changed where the rows are not
/// those of the record.
void joinLive(Work& work, Connection& centro, const JoinRecord& record)
{
    const std::vector<FoundTable>& found = work.liveTables();
    const std::optional<Fields> row = work.row(record.pair, record.pair.goes);
    if (!row || !history::same(*row, record.gone) || !work.row(record.pair, record.pair.stays) ||
        !same(movesOf(work.live(), found, record.pair), record.live))
        throw Changed();
    for (const Move& each : record.live)
        carryOut(centro, each, record.pair);
    centro.Execute(u"DELETE FROM " + String(record.pair.node->table) + u" WHERE " +
                   String(record.pair.node->key()) + u"=" + decimalText(record.pair.goes));
}

/// Whether the rows of a join are no longer as it left them, or the row that went would come back referring
/// to nothing, because of a later one.
bool buildsOn(const JoinRecord& later, const JoinRecord& earlier)
{
    const StringView table = later.pair.node->table;
    if (sameName(earlier.pair.node->table, table) && earlier.pair.stays == later.pair.goes)
        return true;
    for (const schema::Column& each : definitionOf(earlier.pair.node->table).columns())
        if (const Value* value = history::valueOf(earlier.gone, each.name);
            sameName(each.refersTo, table) && value != nullptr &&
            history::same(*value, Value(later.pair.goes)))
            return true;
    for (const Move& each : earlier.live)
        if (sameName(each.table, table) && std::ranges::binary_search(each.keys, later.pair.goes))
            return true;
    return meet(earlier.live, earlier.pair.stays, later.live, later.pair.stays) ||
           meet(earlier.deleted, earlier.pair.stays, later.deleted, later.pair.stays);
}

void settle(Work& work, Long number)
{
    for (const JoinRecord& each : joinRecords(work.deleted(), number))
        work.settle(each);
}

/// One try; false where others wrote meanwhile.
bool tryJoin(Work& work, JoinRecord& record)
{
    const JoinPlan plan = planOf(work, record.pair, &record.live);
    if (!plan.obstacles.empty()) {
        String words;
        for (const String& each : plan.obstacles)
            words += each + u'\n';
        throw RuntimeError(failure::otherData, words + u"No se ha unido nada.");
    }
    record.name = plan.goes;
    record.gone = *work.row(record.pair, record.pair.goes);
    try {
        record.number = begin(work.deleted(), work.style(), record);
    } catch (const RuntimeError& error) {
        if (error.number() == failure::keyExists)
            return false;
        throw;
    }
    bool joined = true;
    try {
        work.inLive(record.pair, [&](Connection& centro) { joinLive(work, centro, record); });
    } catch (const Changed&) {
        joined = false;
    } catch (const RuntimeError&) {
        try {
            settle(work, record.number);
        } catch (const RuntimeError&) {
            // The failure itself is told; the record is settled by the next who joins.
        }
        throw;
    }
    try {
        settle(work, record.number);
    } catch (const RuntimeError&) {
        // It is done, or not, in the live database; the next who joins settles the record.
    }
    return joined;
}

} // namespace

JoinPlan planOf(const Joiner& joiner, const Pair& pair)
{
    Work work(joiner);
    std::vector<Move> moves;
    JoinPlan plan = planOf(work, pair, &moves);
    if (!plan.stays.empty())
        addOpen(plan, work.live(), pair, moves);
    return plan;
}

Long join(const Joiner& joiner, const Pair& pair)
{
    settleJoins(joiner);
    Work work(joiner);
    const Registered stays(work.live(), pair, pair.stays, joiner.by.user);
    std::optional<Registered> goes;
    if (pair.goes != pair.stays)
        goes.emplace(work.live(), pair, pair.goes, joiner.by.user);
    JoinRecord record{.pair = pair, .by = joiner.by};
    for (int round = 0; round < rounds; ++round)
        if (tryJoin(work, record))
            return record.number;
    throw RuntimeError(
        failure::locked,
        u"Otros puestos están escribiendo sin cesar filas que se refieren a ésta: repítalo más "
        u"tarde. No se ha unido nada.");
}

std::vector<Joined> joins(const Joiner& joiner)
{
    std::vector<Joined> found;
    for (const JoinRecord& each : joinRecords(*joiner.school.borrado))
        if (each.done)
            found.push_back({each.number, each.pair, each.name, each.moment, each.by.userName});
    return found;
}

Long undoJoin(const Joiner& joiner, Long number)
{
    settleJoins(joiner);
    Work work(joiner);
    const std::vector<JoinRecord> found =
        number > 0 ? joinRecords(work.deleted(), number) : std::vector<JoinRecord>();
    if (found.empty() || !found.front().done)
        throw RuntimeError(failure::otherData,
                           statement(u"No hay ninguna unión {} que se pueda deshacer.", {number}));
    const JoinRecord& record = found.front();
    for (const JoinRecord& later : joinRecords(work.deleted()))
        if (later.number > number && later.done && buildsOn(later, record))
            throw RuntimeError(failure::otherData,
                               statement(u"La unión {}, posterior, movió alguna de las mismas filas. Deshaga "
                                         u"antes la unión {}. No se ha deshecho nada.",
                                         {later.number, later.number}));
    const Registered stays(work.live(), record.pair, record.pair.stays, joiner.by.user);
    const Registered goes(work.live(), record.pair, record.pair.goes, joiner.by.user);
    if (work.row(record.pair, record.pair.goes))
        throw RuntimeError(failure::keyExists,
                           statement(u"El número {} de «{}» lo tiene ya otra fila: no se ha deshecho nada.",
                                     {record.pair.goes, record.name}));
    Long left = record.forgotten;
    work.inLive(record.pair, [&](Connection& centro) {
        insertRow(centro, record.pair.node->table, record.gone);
        for (const Move& each : record.live)
            left += reverse(centro, each, record.pair);
    });
    try {
        settle(work, number);
    } catch (const RuntimeError&) {
        // Undone in the live database; the next who joins settles the record.
    }
    return left;
}

void settleJoins(const Joiner& joiner)
{
    Work work(joiner);
    const std::vector<JoinRecord> records = joinRecords(work.deleted());
    if (records.empty())
        return;
    const std::vector<Registration> open = registrations(work.live());
    for (const JoinRecord& record : records) {
        // Another station is at it.
        const bool busy = std::ranges::any_of(open, [&](const Registration& each) {
            return !each.gone && each.row == record.pair.goes &&
                   sameName(each.form, record.pair.node->dialog);
        });
        if (!busy)
            work.settle(record);
    }
}

} // namespace zv::care
