#pragma once

#include "data/Cursor.h"
#include "data/sqlite/Options.h"

#include <chrono>
#include <filesystem>
#include <list>

struct sqlite3;
struct sqlite3_stmt;

namespace zv::sqlite {

struct CloseHandle {
    void operator()(sqlite3* handle) const;
};
struct EndStatement {
    void operator()(sqlite3_stmt* statement) const;
};
using DatabasePtr = std::unique_ptr<sqlite3, CloseHandle>;
using StatementPtr = std::unique_ptr<sqlite3_stmt, EndStatement>;

/// Cache (LRU) of prepared statements by their text, to run again with other values. A few dozen are kept.
class ReadyStatements {
public:
    /// Takes a statement out of the cache; nullptr if there is none of that text.
    StatementPtr take(StringView text);
    void keep(String text, StatementPtr statement);

private:
    std::list<std::pair<String, StatementPtr>> kept_;
};

/// An open connection of the driver, and the cursors whose rows it still holds.
struct Handle {
    DatabasePtr database;
    ReadyStatements ready;
    std::vector<Cursor*> cursors;
    /// When a statement that writes returns; false only if that could not be put back.
    bool waitsForDisk = true;
    std::chrono::steady_clock::time_point seenInPlace; ///< When its file was last seen under its name.
};

/// How a file is opened: to be used, made, or only looked at.
enum class OpenAs { existing, fresh, lookOnly };

/// Opens a connection of the driver. Fails with a RuntimeError that tells a person what to do. An empty path
/// is a database in memory.
std::shared_ptr<Handle> openHandle(const std::filesystem::path& file, OpenAs as, Durability durability);
/// Switches the file to write-ahead logging: from then on readers do not block writers.
void useWriteAheadLog(Handle& handle, const std::filesystem::path& file);
bool isDiskFull(sqlite3* handle);

} // namespace zv::sqlite
