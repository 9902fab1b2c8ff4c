#include "data/odbc/Pool.h"

#include <algorithm>
#include <utility>

namespace zv::odbc {
namespace {

// A server that refuses says so at once. One that is cut off says nothing, and a dialog that saves a section
// runs hundreds of statements: they are not to wait for it one by one.
constexpr std::chrono::seconds longWait{1};
constexpr std::chrono::seconds pause{2};

/// Whether a server's words have that name between quotes, of whatever kind its language has.
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

/// Whether a link has ended while it stood idle: found out before a statement is sent on it, for one that was
/// sent may have run and is not sent again. Where the socket does not tell, any answer does.
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

} // namespace

Pool::Pool(Place place) : place_(std::move(place)), lossesSeen_(place_.outage->losses) { link(); }

/// Where one is lost, the others have not noticed yet, here and in the school's other databases. Nobody is
/// told a second time but who reads on from rows that stand open: these keep their link for themselves.
void Pool::noticeLosses()
{
    if (links_.find([](const auto& each) { return each->isLost(); }))
        ++place_.outage->losses;
    if (std::exchange(lossesSeen_, place_.outage->losses) != place_.outage->losses)
        links_.clear();
}

void Pool::pauseAfter(const DataError& failure)
{
    place_.outage->failure = failure;
    place_.outage->until = Outage::Clock::now() + pause;
}

std::shared_ptr<Link> Pool::freshLink()
{
    Outage& outage = *place_.outage;
    const auto begun = Outage::Clock::now();
    if (outage.failure && begun < outage.until)
        throw DataError(*outage.failure);
    try {
        auto fresh = std::make_shared<Link>(place_.connectionText, place_.patience);
        for (const String& setting : place_.settings)
            StatementRows(fresh, setting);
        return fresh;
    } catch (const DataError& failure) {
        if (Outage::Clock::now() - begun >= longWait)
            pauseAfter(failure);
        throw;
    }
}

/// Inside a transaction all statements run on the link that began it.
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
    auto fresh = freshLink();
    links_.add(fresh);
    return fresh;
}

/// Each driver begins and ends one in its own way, and none wants to be told by a statement.
bool Pool::controlsTransaction(StringView statement)
{
    if (sameName(statement, u"BEGIN") && !transaction_) {
        std::shared_ptr<Link> on = link();
        on->begin();
        transaction_ = std::move(on);
        return true;
    }
    if (!transaction_ || !(sameName(statement, u"COMMIT") || sameName(statement, u"ROLLBACK")))
        return false;
    const std::shared_ptr<Link> ended = std::exchange(transaction_, nullptr);
    ended->end(sameName(statement, u"COMMIT"));
    return true;
}

Pool::TableIndexes Pool::indexesOf(StringView table, const std::shared_ptr<Link>& on)
{
    // A transaction in which a statement failed may answer nothing any more.
    const std::shared_ptr<Link> asked = transaction_ ? freshLink() : on;
    for (const String& name : {String(table), lowerName(table)}) {
        TableIndexes found{asked->uniqueIndexes(place_.schema, name), {}};
        if (found.unique.empty())
            continue;
        found.primaryKey = asked->primaryKey(place_.schema, name);
        return found;
    }
    return {};
}

/// Servers have one failure for every index that is unique. Which it was stands in their words, in their
/// language; where the words name none, any may have been it. They are asked for a table's indexes once, and
/// again when they name another: stations that draw the same key fail often.
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
    // PostgreSQL names one always: of no index here, it is one of another table, which a trigger writes.
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
    const std::shared_ptr<Link> on = link();
    while (!on->cursors.empty())
        on->cursors.back()->takeAll();
    try {
        auto rows = std::make_unique<StatementRows>(on, statement);
        return rows->hasColumns() ? std::move(rows) : nullptr;
    } catch (const DataError& failure) {
        if (on->isLost())
            transaction_ = nullptr;
        if (on->wasCut())
            pauseAfter(failure);
        noticeLosses();
        // SQLite has told the columns itself.
        if (failure.number() == failure::keyExists && failure.engineCode().starts_with("23") &&
            !isTakenKey(failure, on))
            throw DataError(failure::brokenConstraint, failure.engineCode(), failure.engineText(), statement);
        throw;
    }
}

EngineInfo Pool::engine() { return link()->engine(); }
std::vector<FoundTable> Pool::tables() { return link()->tables(place_.schema); }

} // namespace zv::odbc
