#include "data/odbc/Pool.h"

#include "data/ServerAway.h"
#include "data/odbc/Failure.h"
#include "data/odbc/Probe.h"

#include <algorithm>
#include <random>
#include <thread>
#include <utility>

namespace zv::odbc {
namespace {

// Circuit breaker: a connection attempt that took `longWait` (an unreachable server does not even refuse)
// opens it for `pause`. A dialog that saves a section runs hundreds of statements, and each would wait for
// the timeout.
constexpr std::chrono::seconds longWait{1};
constexpr std::chrono::seconds pause{2};

/// Whether a server's message contains the name in quotes, of any language's kind.
bool isNamed(StringView index, StringView words)
{
    constexpr StringView quotes = u"\"'`«»„“”‘’.\u00A0";
    for (std::size_t place = words.find(index); place != StringView::npos;
         place = words.find(index, place + 1)) {
        const std::size_t end = place + index.size();
        if (place > 0 && end < words.size() && quotes.find(words[place - 1]) != StringView::npos &&
            quotes.find(words[end]) != StringView::npos)
            return true;
    }
    return false;
}

/// Liveness check of an idle link before a statement is sent: a statement that failed after sending may have
/// run, and must not be retried. Without the socket, by a ping.
bool hasEnded(const std::shared_ptr<Link>& link)
{
    constexpr std::chrono::seconds longIdle{1};
    if (const auto ended = link->wasEnded())
        return *ended;
    if (link->idle() < longIdle)
        return false;
    try {
        StatementRows(link, u"SELECT 1");
    } catch (const DataError&) {
        return link->isLost();
    }
    return false;
}

/// Whether a server ended the statement because of another station's, and did nothing of it: a deadlock, or
/// transactions that no order of one behind the other explains.
bool isConflict(const DataError& failure)
{
    return failure.engineCode().starts_with("40001") || failure.engineCode().starts_with("40P01");
}

/// Whether a node of a cluster refused the statement unread, since it is out of step with the others.
bool isOutOfStep(const DataError& failure)
{
    constexpr std::int32_t notPrepared = 1047;
    return failure.engineCode().starts_with("08S01") && ownNumber(failure) == notPrepared;
}

constexpr int retries = 5;
/// MariaDB's number of a conflict for which it takes back not the statement but the transaction around it.
constexpr std::int32_t wholeTransaction = 1213;

/// A little longer each time, and not in step with the others.
void pauseBeforeRetry(int again)
{
    std::random_device chance;
    std::this_thread::sleep_for(std::chrono::milliseconds((1 << again) + static_cast<int>(chance() % 8)));
}

/// Whether time can mend it: not what this machine lacks.
bool mayPass(const DataError& failure)
{
    return failure.number() == failure::connectionLost && !failure.engineCode().starts_with("IM");
}

/// Failure of what follows in a transaction whose link was lost: its first statements are gone.
DataError lostTransaction(StringView statement)
{
    return {failure::connectionLost, "40000", u"la transacción se ha perdido con la conexión", statement};
}

Absence absence(const DataError& failure) { return {saidByServer(failure), failure.engineText()}; }

} // namespace

Pool::Pool(Target target) : target_(std::move(target)), lossesSeen_(target_.outage->losses)
{
    links_.add(freshLink());
}

/// Drops all links after one was lost, here and in the school's other databases (through the shared counter),
/// so that one outage is reported once. Open recordsets still own their link, and fail when they are read on.
void Pool::noticeLosses()
{
    if (links_.find([](const auto& each) { return each->isLost(); }))
        ++target_.outage->losses;
    if (std::exchange(lossesSeen_, target_.outage->losses) != target_.outage->losses)
        links_.clear();
}

void Pool::pauseAfter(const DataError& failure)
{
    target_.outage->failure = failure;
    target_.outage->until = Outage::Clock::now() + pause;
}

/// At each new link: a pooler may have been put between, or shares sessions since it began anew, and what a
/// school then writes goes into another's schema.
void Pool::refuseSharing(const std::shared_ptr<Link>& fresh, StringView text) const
{
    const Server& kind = *target_.server;
    if (!kind.session.empty() && sharesSessions(fresh, probe(fresh, kind), kind, [&] {
            return std::make_shared<Link>(text, target_.patience);
        }))
        throw DataError(failure::connectionLost, "08P01", sharingPooler, u"");
}

std::shared_ptr<Link> Pool::open() const
{
    std::shared_ptr<Link> fresh;
    target_.servers->find(target_.connectionText, [&](StringView text) {
        fresh = std::make_shared<Link>(text, target_.patience);
        if (target_.server->wantsKeepalive)
            fresh->noticeSilentNetwork();
        target_.servers->requireServing(fresh);
        refuseSharing(fresh, text);
        for (const String& setting : target_.settings)
            StatementRows(fresh, setting);
        if (!target_.selection.empty())
            StatementRows(fresh, target_.selection);
    });
    return fresh;
}

std::shared_ptr<Link> Pool::freshLink()
{
    Outage& outage = *target_.outage;
    const auto begun = Outage::Clock::now();
    if (outage.failure && begun < outage.until)
        throw DataError(*outage.failure);
    try {
        auto fresh = open();
        outage.givenUp = false;
        return fresh;
    } catch (const DataError& failure) {
        if (Outage::Clock::now() - begun >= longWait)
            pauseAfter(failure);
        throw;
    }
}

/// freshLink() for a statement that has not been sent, and can wait.
std::shared_ptr<Link> Pool::awaitedLink()
{
    const auto since = Outage::Clock::now();
    try {
        return freshLink();
    } catch (const DataError& failure) {
        Outage& outage = *target_.outage;
        if (!waitsForServers() || !mayPass(failure))
            throw;
        std::shared_ptr<Link> late;
        const auto tryAgain = [&]() -> std::optional<Absence> {
            try {
                late = open();
                return std::nullopt;
            } catch (const DataError& still) {
                return absence(still);
            }
        };
        outage.givenUp = !waitForServer({since, absence(failure), outage.givenUp, tryAgain});
        if (outage.givenUp || !late)
            throw;
        return late;
    }
}

/// Checks out an idle link or opens one; within a transaction, always its link.
std::shared_ptr<Link> Pool::link()
{
    if (transaction_)
        return transaction_;
    noticeLosses();
    auto idle = links_.idle();
    while (idle && hasEnded(idle)) {
        links_.drop(idle);
        idle = links_.idle();
    }
    if (idle)
        return idle;
    auto fresh = awaitedLink();
    links_.add(fresh);
    return fresh;
}

/// Intercepts transaction statements: ODBC has calls for them, and drivers object to the statements. A
/// transaction whose link was lost, or taken back for a conflict, has been rolled back, and can end in no
/// other way.
bool Pool::controlsTransaction(StringView statement)
{
    if (sameName(statement, u"BEGIN") && !transaction_) {
        std::shared_ptr<Link> on = link();
        on->begin();
        transaction_ = std::move(on);
        return true;
    }
    // Nothing to take back where nothing could begin, and no server to look for.
    if (!transaction_)
        return sameName(statement, u"ROLLBACK");
    if (!sameName(statement, u"COMMIT") && !sameName(statement, u"ROLLBACK"))
        return false;
    const std::shared_ptr<Link> ended = std::exchange(transaction_, nullptr);
    const std::optional<DataError> undone = std::exchange(undone_, std::nullopt);
    const bool commits = sameName(statement, u"COMMIT");
    if (ended->isLost() && commits)
        throw lostTransaction(statement);
    if (!ended->isLost())
        ended->end(commits && !undone);
    if (commits && undone)
        throw DataError(*undone);
    return true;
}

Pool::TableIndexes Pool::indexesOf(StringView table, const std::shared_ptr<Link>& on)
{
    // A link of its own within a transaction, since a failed one rejects all further statements (PostgreSQL).
    const std::shared_ptr<Link> asked = transaction_ ? freshLink() : on;
    for (const String& name : {String(table), lowerName(table)}) {
        const Link::Where where{target_.schema, target_.server->schemasAreCatalogs};
        TableIndexes found{asked->uniqueIndexes(where, name), {}};
        if (found.unique.empty())
            continue;
        found.primaryKey = asked->primaryKey(where, name);
        return found;
    }
    return {};
}

/// Whether a unique violation is the key's: servers have one error for all unique indexes, and name the index
/// only in their message, in their language. Without a name, every index of the table is suspect. Indexes are
/// cached by table and read again when an unknown one is named, as stations that draw the same key fail
/// often.
bool Pool::isTakenKey(const DataError& failure, const std::shared_ptr<Link>& on)
{
    const std::optional<String> table = writtenTable(failure.statement());
    if (!table)
        return true;
    const auto named = [&](const UniqueIndex& each) { return isNamed(each.name, failure.engineText()); };
    TableIndexes& known = indexes_[lowerName(*table)];
    try {
        if (std::ranges::none_of(known.unique, named))
            known = indexesOf(*table, on);
    } catch (const DataError&) {
        return true;
    }
    const bool anyNamed = std::ranges::any_of(known.unique, named);
    // PostgreSQL always names the index: an unknown one belongs to another table, written by a trigger.
    if (!anyNamed && failure.engineCode().starts_with("23505"))
        return false;
    return std::ranges::all_of(known.unique, [&](const UniqueIndex& each) {
        return (anyNamed && !named(each)) || holdsKey(each, *table, known.primaryKey);
    });
}

std::unique_ptr<Cursor> Pool::run(StringView statement)
{
    refuseUnstorable(statement);
    if (controlsTransaction(statement))
        return nullptr;
    // What would follow is a part of it alone.
    if (undone_)
        throw DataError(*undone_);
    for (int again = 0;; ++again) {
        const std::shared_ptr<Link> on = link();
        if (on->isLost())
            throw lostTransaction(statement);
        while (!on->cursors.empty())
            on->cursors.back()->takeAll();
        try {
            return send(statement, on);
        } catch (const DataError& failure) {
            const bool undone = isConflict(failure) && !on->isLost();
            const bool elsewhere = target_.servers->isList() && isReadOnly(failure);
            if (elsewhere)
                on->abandon();
            if (again == retries || !(undone || elsewhere || isOutOfStep(failure)))
                throw;
            if (transaction_ && ownNumber(failure) == wholeTransaction)
                undone_ = failure;
            if (transaction_)
                throw;
            // Nothing of the statement was done, and it is a transaction by itself.
        }
        pauseBeforeRetry(again);
    }
}

std::unique_ptr<Cursor> Pool::send(StringView statement, const std::shared_ptr<Link>& on)
{
    try {
        auto rows = std::make_unique<StatementRows>(on, statement);
        return rows->hasColumns() ? std::move(rows) : nullptr;
    } catch (const DataError& failure) {
        if (on->wasCut())
            pauseAfter(failure);
        noticeLosses();
        // Not for SQLite (no state 23): its message has already decided, see Failure.cpp.
        if (failure.number() == failure::keyExists && failure.engineCode().starts_with("23") &&
            !isTakenKey(failure, on))
            throw DataError(failure::brokenConstraint, failure.engineCode(), failure.engineText(), statement);
        throw;
    }
}

EngineInfo Pool::engine() { return link()->engine(); }
std::vector<FoundTable> Pool::tables() { return link()->tables(); }

} // namespace zv::odbc
