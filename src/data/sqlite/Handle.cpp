#include "data/sqlite/Handle.h"

#include "data/sqlite/Failure.h"
#include "data/sqlite/File.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <fstream>
#include <thread>

namespace zv::sqlite {
namespace {

constexpr std::chrono::seconds longestWait{5};
constexpr std::chrono::milliseconds waitStep{4};
constexpr std::size_t statementsKept = 32;
constexpr const char* writeAheadLog = "PRAGMA journal_mode=WAL;";

[[noreturn]] void failOpening(sqlite3* handle, const std::filesystem::path& file)
{
    if (isDiskFull(handle))
        failFor(file, diskFull);
    if (sqlite3_extended_errcode(handle) == SQLITE_READONLY_ROLLBACK)
        failFor(file,
                u"tiene a medias algo que se estaba escribiendo cuando se cortó: abra el centro una vez "
                u"con el programa, y queda como estaba.");
    switch (sqlite3_errcode(handle) & 0xFF) {
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
        throw DamagedFile(file);
    case SQLITE_CANTOPEN:
    case SQLITE_READONLY:
    case SQLITE_PERM:
        failFor(file, canBeRead(file) ? noRight : noRightToRead);
    default:
        throw failureOf(handle, Phase::running, u"");
    }
}

/// Whether the file is in write-ahead mode and has no log: then it is complete, and open nowhere.
bool restsWithoutLog(const std::filesystem::path& file)
{
    std::array<char, 20> head{};
    std::ifstream(file, std::ios::binary).read(head.data(), head.size());
    std::filesystem::path log = file;
    std::error_code ignored;
    return head[19] == 2 && !std::filesystem::exists(log += "-wal", ignored);
}

/// File name or URI for the engine. Even a read-only connection would create a log beside a complete file,
/// and need the right to; so such a file is opened as immutable.
std::string nameOf(const std::filesystem::path& file, OpenAs as)
{
    if (file.empty())
        return ":memory:";
    const auto bytes = [](const std::u8string& text) { return std::string(text.begin(), text.end()); };
    if (as != OpenAs::lookOnly || !restsWithoutLog(file))
        return bytes(file.u8string());
    const std::string path = bytes(std::filesystem::absolute(file).generic_u8string());
    std::string result = path.starts_with('/') ? "file://" : "file:///";
    for (const char each : path)
        switch (each) {
        case '%':
            result += "%25";
            break;
        case '?':
            result += "%3F";
            break;
        case '#':
            result += "%23";
            break;
        default:
            result += each;
        }
    return result + "?immutable=1";
}

/// A connection is one thread's at a time, so that the engine's own locks, one for each field that is read,
/// are left out.
int flagsOf(OpenAs as)
{
    switch (as) {
    case OpenAs::lookOnly:
        return SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_READONLY | SQLITE_OPEN_URI;
    case OpenAs::fresh:
        return SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    case OpenAs::existing:
        break;
    }
    return SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_READWRITE;
}

std::string settingsOf(OpenAs as, Durability durability)
{
    // Probe: whether it is a database at all shows on the first read.
    std::string result = "SELECT 1 FROM sqlite_schema LIMIT 1;";
    if (as == OpenAs::fresh)
        result += writeAheadLog;
    return result + (durability == Durability::full ? "PRAGMA synchronous=FULL" : "PRAGMA synchronous=OFF");
}

/// Busy handler: a retry loop with short, constant waits. The engine's own waits grow so long that a station
/// that writes without pause is hardly ever met between two of its statements.
int waitForOthers(void* /*none*/, int waited)
{
    using Clock = std::chrono::steady_clock;
    thread_local Clock::time_point begun; // Per thread, which waits for one statement at a time.
    if (waited == 0)
        begun = Clock::now();
    if (Clock::now() - begun >= longestWait)
        return 0;
    std::this_thread::sleep_for(waitStep);
    return 1;
}

} // namespace

bool isDiskFull(sqlite3* handle)
{
    const int code = sqlite3_errcode(handle) & 0xFF;
    const std::error_code cause(sqlite3_system_errno(handle), std::system_category());
    return code == SQLITE_FULL ||
           ((code == SQLITE_IOERR || code == SQLITE_CANTOPEN) &&
            (cause == std::errc::no_space_on_device || cause == std::errc::file_too_large));
}

void CloseHandle::operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
void EndStatement::operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }

std::shared_ptr<Handle> openHandle(const std::filesystem::path& file, OpenAs as, Durability durability)
{
    // Windows has two ways to its files, and only this one takes paths of any length; elsewhere there is none
    // of the name.
    constexpr const char* longPaths = "win32-longpath";
    sqlite3* opened = nullptr;
    const int result = sqlite3_open_v2(nameOf(file, as).c_str(), &opened, flagsOf(as),
                                       sqlite3_vfs_find(longPaths) ? longPaths : nullptr);
    auto handle = std::make_shared<Handle>();
    handle->database.reset(opened);
    if (result != SQLITE_OK)
        failOpening(opened, file);
    sqlite3_extended_result_codes(opened, 1);
    sqlite3_busy_handler(opened, waitForOthers, nullptr);
    // Disables a fallback: an unknown name in double quotes is a missing column, not a text.
    sqlite3_db_config(opened, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(opened, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
    if (file.empty())
        return handle;
    if (as != OpenAs::lookOnly && sqlite3_db_readonly(opened, "main") == 1)
        failFor(file, noRight);
    if (sqlite3_exec(opened, settingsOf(as, durability).c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
        failOpening(opened, file);
    return handle;
}

void useWriteAheadLog(Handle& handle, const std::filesystem::path& file)
{
    sqlite3* const database = handle.database.get();
    int code = SQLITE_OK;
    int waited = 0;
    // Of two connections that change the mode at once the engine refuses one without its busy handler.
    do
        code = sqlite3_exec(database, writeAheadLog, nullptr, nullptr, nullptr);
    while (code == SQLITE_BUSY && waitForOthers(nullptr, waited++) != 0);
    if (code != SQLITE_OK)
        failOpening(database, file);
}

StatementPtr ReadyStatements::take(StringView text)
{
    const auto found = std::ranges::find(kept_, text, &std::pair<String, StatementPtr>::first);
    if (found == kept_.end())
        return nullptr;
    StatementPtr statement = std::move(found->second);
    kept_.erase(found);
    return statement;
}

void ReadyStatements::keep(String text, StatementPtr statement)
{
    kept_.emplace_front(std::move(text), std::move(statement));
    if (kept_.size() > statementsKept)
        kept_.pop_back();
}

} // namespace zv::sqlite
