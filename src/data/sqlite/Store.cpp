#include "data/sqlite/Store.h"

#include "data/Dialect.h"
#include "data/sqlite/Failure.h"

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
constexpr std::size_t handlesKept = 4;
constexpr std::size_t statementsKept = 32;
constexpr const char* writeAheadLog = "PRAGMA journal_mode=WAL;";

/// Whether the file and those beside it can be read: then the right that is missing is that to write.
bool canBeRead(const std::filesystem::path& file)
{
    for (const char* suffix : {"", "-wal", "-shm"}) {
        std::filesystem::path each = file;
        std::error_code ignored;
        if (std::filesystem::exists(each += suffix, ignored) && !std::ifstream(each))
            return false;
    }
    return true;
}

bool isDiskFull(sqlite3* handle)
{
    const int code = sqlite3_errcode(handle) & 0xFF;
    const std::error_code cause(sqlite3_system_errno(handle), std::generic_category());
    return code == SQLITE_FULL ||
           ((code == SQLITE_IOERR || code == SQLITE_CANTOPEN) &&
            (cause == std::errc::no_space_on_device || cause == std::errc::file_too_large));
}

[[noreturn]] void failOpening(sqlite3* handle, const std::filesystem::path& file)
{
    if (isDiskFull(handle))
        failFor(file, diskFull);
    switch (sqlite3_errcode(handle) & 0xFF) {
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
        failFor(file, u"no es una base de datos, o está dañada: compruebe el nombre, o ponga en su lugar la "
                      u"última copia de seguridad.");
    case SQLITE_CANTOPEN:
    case SQLITE_READONLY:
    case SQLITE_PERM:
        failFor(file, canBeRead(file) ? noRight : noRightToRead);
    default:
        throw failureOf(handle, Phase::running, u"");
    }
}

/// Whether the file wants a log beside it and has none: then it is complete, and open nowhere.
bool restsWithoutLog(const std::filesystem::path& file)
{
    std::array<char, 20> head{};
    std::ifstream(file, std::ios::binary).read(head.data(), head.size());
    std::filesystem::path log = file;
    std::error_code ignored;
    return head[19] == 2 && !std::filesystem::exists(log += "-wal", ignored);
}

/// The name as the engine takes it. Even one that only looks would leave a log beside a file that rests
/// without one, and need the right to make it; so such a file is read as it stands.
std::string nameOf(const std::filesystem::path& file, Opening opening)
{
    if (file.empty())
        return ":memory:";
    const auto bytes = [](const std::u8string& text) { return std::string(text.begin(), text.end()); };
    if (opening != Opening::lookOnly || !restsWithoutLog(file))
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

int flagsOf(Opening opening)
{
    switch (opening) {
    case Opening::lookOnly:
        return SQLITE_OPEN_READONLY | SQLITE_OPEN_URI;
    case Opening::fresh:
        return SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    case Opening::existing:
        break;
    }
    return SQLITE_OPEN_READWRITE;
}

std::string settingsOf(Opening opening, Durability durability)
{
    // Whether there is a database at all is found out by reading it.
    std::string result = "SELECT 1 FROM sqlite_schema LIMIT 1;";
    if (opening == Opening::fresh)
        result += writeAheadLog;
    return result + (durability == Durability::full ? "PRAGMA synchronous=FULL" : "PRAGMA synchronous=OFF");
}

/// Waits for another station, in short steps: the engine's own steps grow so long that a station that writes
/// without pause is hardly ever met between two of its statements.
int waitForOthers(void* /*none*/, int waited)
{
    using Clock = std::chrono::steady_clock;
    thread_local Clock::time_point begun; // A thread waits for one statement at a time.
    if (waited == 0)
        begun = Clock::now();
    if (Clock::now() - begun >= longestWait)
        return 0;
    std::this_thread::sleep_for(waitStep);
    return 1;
}

/// No file: in memory.
DatabasePtr openHandle(const std::filesystem::path& file, Opening opening, Durability durability)
{
    sqlite3* opened = nullptr;
    const int result = sqlite3_open_v2(nameOf(file, opening).c_str(), &opened, flagsOf(opening), nullptr);
    DatabasePtr handle(opened);
    if (result != SQLITE_OK)
        failOpening(opened, file);
    sqlite3_extended_result_codes(opened, 1);
    sqlite3_busy_handler(opened, waitForOthers, nullptr);
    // A name in double quotes that no column has is a missing column, not a text.
    sqlite3_db_config(opened, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(opened, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
    if (file.empty())
        return handle;
    if (opening != Opening::lookOnly && sqlite3_db_readonly(opened, "main") == 1)
        failFor(file, noRight);
    if (sqlite3_exec(opened, settingsOf(opening, durability).c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
        failOpening(opened, file);
    return handle;
}

StatementPtr prepare(sqlite3* handle, StringView statement)
{
    sqlite3_stmt* prepared = nullptr;
    const void* tail = nullptr;
    const auto bytes = static_cast<int>(statement.size() * sizeof(char16_t));
    const int result = sqlite3_prepare16_v3(handle, statement.data(), bytes, 0, &prepared, &tail);
    if (result != SQLITE_OK)
        throw failureOf(handle, Phase::preparing, statement);
    StatementPtr only(prepared);
    if (!only)
        throw DataError(failure::badStatement, "", u"la instrucción está vacía", statement);
    const auto taken = static_cast<const char16_t*>(tail) - statement.data();
    refuseSecond(statement.substr(static_cast<std::size_t>(taken)), statement);
    return only;
}

/// The values stay where they are until the statement has run.
void bind(sqlite3_stmt* statement, const Parameters& parameters)
{
    int place = 0;
    for (const Parameters::Value& value : parameters.values) {
        ++place;
        const auto* text = std::get_if<std::string>(&value);
        const int result = text ? sqlite3_bind_text64(statement, place, text->data(), text->size(),
                                                      SQLITE_STATIC, SQLITE_UTF8)
                                : sqlite3_bind_int64(statement, place, std::get<std::int64_t>(value));
        if (result != SQLITE_OK)
            throw failureOf(sqlite3_db_handle(statement), Phase::preparing, parameters.text);
    }
}

Cursor::Field fieldOf(sqlite3_stmt* statement, int column)
{
    switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER:
        return wholeNumber(sqlite3_column_int64(statement, column));
    case SQLITE_FLOAT:
        return Value(sqlite3_column_double(statement, column));
    case SQLITE_TEXT: {
        const auto* text = static_cast<const char16_t*>(sqlite3_column_text16(statement, column));
        const auto bytes = static_cast<std::size_t>(sqlite3_column_bytes16(statement, column));
        return text ? Value(String(text, bytes / sizeof(char16_t))) : Value(String());
    }
    case SQLITE_NULL:
        return Value(Null());
    default:
        return std::nullopt;
    }
}

} // namespace

[[noreturn]] void failFor(const std::filesystem::path& file, StringView words)
{
    throw RuntimeError(failure::otherData, u"«" + file.u16string() + u"» " + String(words));
}

void checkPlace(const std::filesystem::path& file, bool create)
{
    std::error_code ignored;
    if (file.empty())
        throw RuntimeError(failure::otherData,
                           u"Falta el fichero de la base de datos: escriba sqlite:FICHERO.");
    if (std::filesystem::is_directory(file, ignored))
        failFor(file, u"es una carpeta; escriba el nombre de un fichero.");
    const bool exists = std::filesystem::exists(file, ignored);
    if (!exists && std::filesystem::is_symlink(std::filesystem::symlink_status(file, ignored)))
        failFor(file, u"es un enlace a un fichero que no existe: corrija el enlace, o elija otro nombre.");
    if (!create && exists && !std::filesystem::is_regular_file(file, ignored))
        failFor(file, u"no es un fichero con datos: compruebe el nombre.");
    if (create && exists)
        failFor(file, u"ya existe: elija otro nombre, o quítelo antes.");
    if (!create && !exists)
        failFor(file, u"no existe: compruebe el nombre, o cree antes la base de datos.");
    if (create && file.has_parent_path() && !std::filesystem::is_directory(file.parent_path(), ignored))
        failFor(file, u"no se puede crear: su carpeta no existe.");
}

void removeFile(const std::filesystem::path& file)
{
    for (const char* suffix : {"", "-journal", "-wal", "-shm"}) {
        std::filesystem::path each = file;
        std::error_code ignored;
        std::filesystem::remove(each += suffix, ignored);
    }
}

void CloseHandle::operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
void EndStatement::operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }

Store::Store(Reuse reuse) : reuse_(reuse)
{
    handles_.push_back(std::make_shared<Handle>());
    handles_.back()->database = openHandle({}, opening_, durability_);
}

Store::Store(std::filesystem::path file, Opening opening, Durability durability, Reuse reuse)
    : file_(std::move(file)), opening_(opening), durability_(durability), reuse_(reuse)
{
    checkPlace(file_, opening == Opening::fresh);
    auto first = std::make_shared<Handle>();
    try {
        first->database = openHandle(file_, opening, durability_);
    } catch (const RuntimeError&) {
        if (opening == Opening::fresh)
            removeFile(file_);
        throw;
    }
    handles_.push_back(std::move(first));
}

void Store::settle()
{
    sqlite3* handle = handles_.front()->database.get();
    if (sqlite3_exec(handle, writeAheadLog, nullptr, nullptr, nullptr) != SQLITE_OK)
        failOpening(handle, file_);
}

/// Inside a transaction all statements run on the handle that began it.
std::shared_ptr<Handle> Store::handle(StringView statement)
{
    const auto inTransaction = [](const auto& each) {
        return sqlite3_get_autocommit(each->database.get()) == 0;
    };
    const auto isFree = [](const auto& each) { return each->cursors.empty(); };
    auto found = std::ranges::find_if(handles_, inTransaction);
    if (found == handles_.end())
        found = file_.empty() ? handles_.begin() : std::ranges::find_if(handles_, isFree);
    if (found != handles_.end()) {
        std::shared_ptr<Handle> result = *found;
        // Handles that many open recordsets once needed are not kept for ever.
        if (handles_.size() > handlesKept)
            std::erase_if(handles_, [&](const auto& each) { return each != result && isFree(each); });
        return result;
    }
    refuseVanished(*handles_.front(), statement);
    auto fresh = std::make_shared<Handle>();
    fresh->database =
        openHandle(file_, opening_ == Opening::fresh ? Opening::existing : opening_, durability_);
    handles_.push_back(fresh);
    return fresh;
}

/// A file that was taken away goes on existing for who has it open: what is written to it would be lost.
void Store::refuseVanished(Handle& handle, StringView statement) const
{
    int moved = 0;
    sqlite3_file_control(handle.database.get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved);
    if (moved != 0)
        throw DataError(failure::connectionLost, "", u"«" + file_.u16string() + u"» ya no está en su sitio",
                        statement);
}

std::unique_ptr<Cursor> Store::run(StringView statement)
{
    refuseUnstorable(statement);
    std::shared_ptr<Handle> on = handle(statement);
    refuseVanished(*on, statement);
    auto [prepared, parameters] = ready(*on, statement);
    const bool hasRows = sqlite3_column_count(prepared.get()) > 0;
    if (!hasRows || sqlite3_stmt_readonly(prepared.get()) == 0) {
        // Rows that stand open on the same handle stay what they were when they were asked for.
        while (!on->cursors.empty())
            on->cursors.back()->takeAll();
    }
    auto cursor =
        std::make_unique<StatementRows>(std::move(on), std::move(prepared), statement, std::move(parameters));
    return hasRows ? std::move(cursor) : nullptr;
}

/// With values out of it where they can be; what fails so is read as it stands, and tells what is wrong with
/// it.
std::pair<StatementPtr, std::optional<Parameters>> Store::ready(Handle& handle, StringView statement) const
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

StatementRows::StatementRows(std::shared_ptr<Handle> handle, StatementPtr prepared, StringView statement,
                             std::optional<Parameters> parameters)
    : handle_(std::move(handle)), prepared_(std::move(prepared)), statement_(statement),
      parameters_(std::move(parameters)), onlyReads_(sqlite3_stmt_readonly(prepared_.get()) != 0)
{
    begin();
    if (!isOver())
        handle_->cursors.push_back(this);
}

StatementRows::~StatementRows() { StatementRows::finish(); }

void StatementRows::finish()
{
    if (!handle_)
        return;
    if (parameters_) {
        sqlite3_reset(prepared_.get());
        sqlite3_clear_bindings(prepared_.get());
        handle_->ready.keep(std::move(parameters_->text), std::move(prepared_));
    }
    prepared_.reset();
    std::erase(handle_->cursors, this);
    handle_.reset();
}

bool StatementRows::read(Row& row)
{
    const int result = sqlite3_step(prepared_.get());
    if (names_.empty())
        readNames();
    const bool failed = result != SQLITE_ROW && result != SQLITE_DONE;
    if (failed && isDiskFull(handle_->database.get()))
        throw DataError(failure::otherData, std::to_string(result), u"el disco está lleno: deje sitio",
                        statement_);
    if (failed)
        throw failureOf(handle_->database.get(), Phase::running, statement_);
    if (result == SQLITE_DONE)
        return false;
    row.reserve(names_.size());
    for (int column = 0; column < static_cast<int>(names_.size()); ++column)
        row.push_back(fieldOf(prepared_.get(), column));
    return true;
}

/// Known once it runs: another station may have changed the table since the handle looked at it last.
void StatementRows::readNames()
{
    const int columns = sqlite3_column_count(prepared_.get());
    for (int column = 0; column < columns; ++column)
        names_.emplace_back(static_cast<const char16_t*>(sqlite3_column_name16(prepared_.get(), column)));
}

} // namespace zv::sqlite
