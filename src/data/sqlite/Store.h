#pragma once

#include "data/Cursor.h"
#include "data/sqlite/Parameters.h"
#include "data/sqlite/SqliteEngine.h"

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

/// Statements that have run and may run again with other values, by their text; the latest first. A few dozen
/// are kept.
class ReadyStatements {
public:
    /// None if there is none of that text.
    StatementPtr take(StringView text);
    void keep(String text, StatementPtr statement);

private:
    std::list<std::pair<String, StatementPtr>> kept_;
};

/// A handle of a database, and the cursors whose rows it still holds.
struct Handle {
    DatabasePtr database;
    ReadyStatements ready;
    std::vector<Cursor*> cursors;
};

/// What a file is opened for.
enum class Opening { existing, fresh, lookOnly };

inline constexpr StringView noRight =
    u"no se puede escribir: dé a este usuario permiso de escritura sobre el fichero y sobre "
    u"su carpeta.";
inline constexpr StringView noRightToRead =
    u"no se puede leer: dé a este usuario permiso de lectura sobre el fichero y sobre los que estén "
    u"a su lado con el mismo nombre.";
inline constexpr StringView diskFull =
    u"no se puede abrir ni crear: el disco está lleno; deje sitio y repita la orden.";

/// Fails with words about a file that tell a person what to do.
[[noreturn]] void failFor(const std::filesystem::path& file, StringView words);
/// Fails for what the place tells without the engine: there is nothing, or something already.
void checkPlace(const std::filesystem::path& file, bool create);

/// Takes away a database's file and what the engine keeps beside it, as far as they are there.
void removeFile(const std::filesystem::path& file);

/// A database: one handle in memory; for a file as many as there are cursors open at a time. A statement runs
/// on a handle without cursors, so that it sees the newest rows and its writing waits for no reader of ours.
class Store {
public:
    /// A database in memory.
    explicit Store(Reuse reuse);
    /// A file. Fails with a RuntimeError that tells a person what to do.
    Store(std::filesystem::path file, Opening opening, Durability durability, Reuse reuse);

    /// From then on who reads keeps nobody from writing: the file itself remembers it. Fails as opening does.
    void settle();
    /// Runs a statement and reads its first rows. None if it has no columns.
    std::unique_ptr<Cursor> run(StringView statement);

private:
    std::shared_ptr<Handle> handle(StringView statement);
    std::pair<StatementPtr, std::optional<Parameters>> ready(Handle& handle, StringView statement) const;
    void refuseVanished(Handle& handle, StringView statement) const;

    std::filesystem::path file_;
    Opening opening_ = Opening::existing;
    Durability durability_ = Durability::full;
    Reuse reuse_ = Reuse::yes;
    std::vector<std::shared_ptr<Handle>> handles_;
};

class StatementRows final : public Cursor {
public:
    /// `parameters` belong to the statement where it may run again with others.
    StatementRows(std::shared_ptr<Handle> handle, StatementPtr prepared, StringView statement,
                  std::optional<Parameters> parameters);
    ~StatementRows() override;
    bool onlyReads() const override { return onlyReads_; }

private:
    bool read(Row& row) override;
    void finish() override;
    void readNames();

    std::shared_ptr<Handle> handle_;
    StatementPtr prepared_;
    String statement_;
    std::optional<Parameters> parameters_;
    bool onlyReads_ = true;
};

} // namespace zv::sqlite
