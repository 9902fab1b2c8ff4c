#pragma once

#include "data/Cursor.h"
#include "data/sqlite/SqliteEngine.h"

#include <filesystem>

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

class StatementRows final : public Cursor {
public:
    StatementRows(std::shared_ptr<Handle> handle, StatementPtr statement);
    ~StatementRows() override;
    bool onlyReads() const override { return onlyReads_; }

private:
    bool read(Row& row) override;
    void finish() override;
    void readNames();

    std::shared_ptr<Handle> handle_;
    StatementPtr statement_;
    bool onlyReads_ = true;
};

} // namespace zv::sqlite
