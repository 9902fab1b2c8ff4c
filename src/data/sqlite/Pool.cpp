#include "data/sqlite/Pool.h"

#include "data/Schema.h"
#include "data/sqlite/Failure.h"
#include "data/sqlite/File.h"
#include "data/sqlite/StatementRows.h"

#include <algorithm>
#include <chrono>
#include <initializer_list>
#include <sqlite3.h>

namespace zv::sqlite {
namespace {

bool isOfRegistrations(StringView statement)
{
    return std::ranges::any_of(
        std::initializer_list<StringView>{u"INSERT INTO ", u"UPDATE ", u"DELETE FROM "},
        [&](StringView verb) {
            return statement.starts_with(verb) &&
                   statement.substr(verb.size()).starts_with(schema::registrations) &&
                   statement.substr(verb.size() + schema::registrations.size()).starts_with(u' ');
        });
}

bool waitForDisk(Handle& handle, bool waits)
{
    const char* const pragma = waits ? "PRAGMA synchronous=FULL" : "PRAGMA synchronous=NORMAL";
    const bool done = sqlite3_exec(handle.database.get(), pragma, nullptr, nullptr, nullptr) == SQLITE_OK;
    if (done)
        handle.waitsForDisk = waits;
    return done;
}

/// RAII guard of a statement that does not wait for the disk.
class Hurry {
public:
    explicit Hurry(std::shared_ptr<Handle> handle) : handle_(std::move(handle))
    {
        waitForDisk(*handle_, false);
    }
    Hurry(const Hurry&) = delete;
    Hurry& operator=(const Hurry&) = delete;
    ~Hurry() { waitForDisk(*handle_, true); }

private:
    std::shared_ptr<Handle> handle_;
};

} // namespace

Pool::Pool(Reuse reuse) : reuse_(reuse) { handles_.add(openHandle({}, as_, durability_)); }

Pool::Pool(std::filesystem::path file, OpenAs as, Durability durability, Reuse reuse)
    : file_(std::move(file)), as_(as), durability_(durability), reuse_(reuse)
{
    checkPlace(file_, as == OpenAs::fresh);
    try {
        handles_.add(openHandle(file_, as, durability_));
    } catch (const RuntimeError&) {
        if (as == OpenAs::fresh)
            removeFile(file_);
        throw;
    }
}

void Pool::settle() { useWriteAheadLog(*handles_.front(), file_); }

void Pool::backup(const std::filesystem::path& file)
{
    const std::shared_ptr<Handle> from = handle({});
    const std::shared_ptr<Handle> to = openHandle(file, OpenAs::fresh, Durability::off);
    // One file, without a log beside it.
    sqlite3_exec(to->database.get(), "PRAGMA journal_mode=DELETE", nullptr, nullptr, nullptr);
    sqlite3_backup* const copying =
        sqlite3_backup_init(to->database.get(), "main", from->database.get(), "main");
    const int copied = copying != nullptr ? sqlite3_backup_step(copying, -1) : SQLITE_ERROR;
    sqlite3_backup_finish(copying);
    if (copied != SQLITE_DONE)
        throw failureOf(to->database.get(), Phase::running, u"");
}

/// Inside a transaction every statement runs on the handle that began it; in memory there is only one.
std::shared_ptr<Handle> Pool::handle(StringView statement)
{
    const auto inTransaction = [](const auto& each) {
        return sqlite3_get_autocommit(each->database.get()) == 0;
    };
    if (auto begun = handles_.find(inTransaction))
        return begun;
    if (file_.empty())
        return handles_.front();
    if (auto idle = handles_.idle())
        return idle;
    refuseVanished(*handles_.front(), statement);
    auto fresh = openHandle(file_, as_ == OpenAs::fresh ? OpenAs::existing : as_, durability_);
    handles_.add(fresh);
    return fresh;
}

/// Check against lost writes: a deleted file goes on existing for whoever has it open. The look costs as much
/// as a small statement, and a person who moves files is slower than statements that follow each other.
void Pool::refuseVanished(Handle& handle, StringView statement) const
{
    constexpr std::chrono::milliseconds lookedBefore{5};
    const auto now = std::chrono::steady_clock::now();
    if (now - handle.seenInPlace < lookedBefore)
        return;
    int moved = 0;
    sqlite3_file_control(handle.database.get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved);
    if (moved != 0)
        throw DataError(failure::connectionLost, "", u"«" + file_.u16string() + u"» ya no está en su sitio",
                        statement);
    handle.seenInPlace = now;
}

std::unique_ptr<Cursor> Pool::run(StringView statement)
{
    refuseUnstorable(statement);
    std::shared_ptr<Handle> on = handle(statement);
    refuseVanished(*on, statement);
    if (!on->waitsForDisk && !waitForDisk(*on, true))
        throw failureOf(on->database.get(), Phase::running, statement);
    auto [prepared, parameters] = ready(*on, statement);
    const bool hasRows = sqlite3_column_count(prepared.get()) > 0;
    // A registration that a power failure takes back was a station's that failed with it. The next statement
    // that waits for the disk takes it there.
    std::optional<Hurry> hurry;
    if (durability_ == Durability::full && !file_.empty() && isOfRegistrations(statement) &&
        sqlite3_get_autocommit(on->database.get()) != 0)
        hurry.emplace(on);
    if (!hasRows || sqlite3_stmt_readonly(prepared.get()) == 0) {
        // Snapshot: open cursors of the same handle buffer their rows, which stay what they were when they
        // were asked for.
        while (!on->cursors.empty())
            on->cursors.back()->takeAll();
    }
    auto cursor =
        std::make_unique<StatementRows>(std::move(on), std::move(prepared), statement, std::move(parameters));
    return hasRows ? std::move(cursor) : nullptr;
}

/// Prepares the statement, from the cache where it can be parameterised; if that fails it is prepared as it
/// stands, so that the failure is about its own text.
std::pair<StatementPtr, std::optional<Parameters>> Pool::ready(Handle& handle, StringView statement) const
{
    std::optional<Parameters> parameters;
    if (reuse_ == Reuse::yes)
        parameters = parametersOf(statement);
    if (!parameters)
        return {prepare(handle.database.get(), statement), std::nullopt};
    StatementPtr prepared = handle.ready.take(parameters->text);
    try {
        if (!prepared)
            prepared = prepare(handle.database.get(), parameters->text);
        bind(prepared.get(), *parameters);
    } catch (const DataError&) {
        return {prepare(handle.database.get(), statement), std::nullopt};
    }
    return {std::move(prepared), std::move(parameters)};
}

} // namespace zv::sqlite
