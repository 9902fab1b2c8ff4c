#pragma once

#include "data/Connection.h"
#include "data/DataError.h"
#include "data/sqlite/SqliteEngine.h"

#include <deque>
#include <filesystem>
#include <optional>

struct sqlite3;
struct sqlite3_stmt;

namespace zv::sqlite {

class Cursor;

struct CloseHandle {
    void operator()(sqlite3* handle) const;
};
struct EndStatement {
    void operator()(sqlite3_stmt* statement) const;
};
using DatabasePtr = std::unique_ptr<sqlite3, CloseHandle>;
using StatementPtr = std::unique_ptr<sqlite3_stmt, EndStatement>;

/// A handle of a database, and the cursors whose rows it still holds.
struct Handle {
    DatabasePtr database;
    std::vector<Cursor*> cursors;
};

/// What a file is opened for.
enum class Opening { existing, fresh, lookOnly };

/// Takes away a database's file and what the engine keeps beside it, as far as they are there.
void removeFile(const std::filesystem::path& file);

/// A database: one handle in memory; for a file as many as there are cursors open at a time. A statement runs
/// on a handle without cursors, so that it sees the newest rows and its writing waits for no reader of ours.
class Store {
public:
    /// A database in memory.
    Store();
    /// A file. Fails with a RuntimeError that tells a person what to do.
    Store(std::filesystem::path file, Opening opening, Durability durability);

    /// Runs a statement and reads its first rows. None if it has no columns.
    std::unique_ptr<Cursor> run(StringView statement);

private:
    std::shared_ptr<Handle> handle(StringView statement);
    void refuseVanished(Handle& handle, StringView statement) const;

    std::filesystem::path file_;
    Opening opening_ = Opening::existing;
    Durability durability_ = Durability::full;
    std::vector<std::shared_ptr<Handle>> handles_;
};

/// The rows of a running statement. It holds the present row and the next, so that a result of one row
/// is over at once and frees its handle.
class Cursor {
public:
    /// A field; empty if it holds bytes, which nothing here can take.
    using Field = std::optional<Value>;
    using Row = std::vector<Field>;

    Cursor(std::shared_ptr<Handle> handle, StatementPtr statement);
    Cursor(const Cursor&) = delete;
    Cursor& operator=(const Cursor&) = delete;
    ~Cursor();

    const std::vector<String>& names() const { return names_; }
    /// The present row; none past the last.
    const Row* row() const { return rows_.empty() ? nullptr : &rows_.front(); }
    bool isOnFirst() const { return passed_ == 0; }
    /// Whether the statement may run again: it only reads.
    bool onlyReads() const { return onlyReads_; }
    /// On to the next row, of which a failure may stand in the way.
    void advance();
    /// Reads all rows that are left, so that the handle is free.
    void takeAll();

private:
    void fetch();
    void readNames();
    void end();

    std::shared_ptr<Handle> handle_;
    StatementPtr statement_;
    std::vector<String> names_;
    std::deque<Row> rows_;
    std::optional<DataError> failure_; ///< Met behind the rows read so far.
    std::uint64_t passed_ = 0;
    bool onlyReads_ = true;
};

} // namespace zv::sqlite
