#include "data/sqlite/SqliteEngine.h"

#include "data/Dialect.h"
#include "data/sqlite/File.h"
#include "data/sqlite/FilesToBe.h"
#include "data/sqlite/Pool.h"
#include "data/sqlite/Replacing.h"
#include "runtime/Convert.h"
#include "runtime/OwnerOnly.h"

#include <sqlite3.h>

#include <algorithm>

namespace zv {
namespace sqlite {
namespace {

constexpr Dialect dialect{.joinTexts = u"||", .deleteWithStar = false};

class SqliteConnection final : public Connection {
public:
    explicit SqliteConnection(std::shared_ptr<Pool> pool) : pool_(std::move(pool)) {}

    RecordsetPtr Execute(StringView statement) override
    {
        String room;
        return executeNative(inDialect(statement, dialect, room));
    }
    RecordsetPtr executeNative(StringView statement) override
    {
        return recordsetOf(String(statement), pool_->run(statement),
                           [pool = pool_](StringView again) { return pool->run(again); });
    }
    EngineInfo engine() override { return {u"SQLite", fromUtf8(sqlite3_libversion())}; }

    Pool& pool() { return *pool_; }

private:
    std::shared_ptr<Pool> pool_;
};

std::filesystem::path pathOf(StringView location, Database which)
{
    const std::string path = toUtf8(location);
    return fileOf(std::u8string(path.begin(), path.end()), which);
}

class SqliteEngine final : public Engine {
public:
    SqliteEngine(Durability durability, Reuse reuse) : durability_(durability), reuse_(reuse) {}
    StringView scheme() const override { return u"sqlite"; }
    DdlStyle ddl(Connection& /*connection*/) override { return DdlStyle::sqlite; }
    ConnectionPtr open(StringView location, Database which) override
    {
        return opened(location, which, OpenAs::existing);
    }
    void settle(Connection& connection) override
    {
        dynamic_cast<SqliteConnection&>(connection).pool().settle();
    }
    ConnectionPtr inspect(StringView location, Database which) override
    {
        return opened(location, which, OpenAs::lookOnly);
    }
    /// Locks the three against writers for as long as it takes to begin a reading transaction on each: with
    /// the write-ahead log what they read stays, and nobody waits for them.
    School snapshot(StringView location) override
    {
        School read;
        std::vector<ConnectionPtr> locks;
        for (const auto& [which, place] :
             {std::pair(Database::centro, &School::centro), std::pair(Database::borrado, &School::borrado),
              std::pair(Database::entrada, &School::entrada)}) {
            locks.push_back(open(location, which));
            settle(*locks.back());
            read.*place = open(location, which);
        }
        for (const ConnectionPtr& each : locks)
            each->executeNative(u"BEGIN IMMEDIATE");
        for (const ConnectionPtr& each : {read.centro, read.borrado, read.entrada}) {
            each->executeNative(u"BEGIN");
            each->executeNative(u"SELECT COUNT(*) FROM sqlite_schema");
        }
        return read;
    }
    bool exists(StringView location) override
    {
        finishReplacing(pathOf(location, Database::centro));
        return std::ranges::any_of(everyDatabase, [&](Database which) {
            std::error_code ignored;
            return std::filesystem::exists(pathOf(location, which), ignored) &&
                   !std::filesystem::is_directory(pathOf(location, which), ignored);
        });
    }
    String beside(StringView location, StringView word) override
    {
        const std::filesystem::path live = resolved(pathOf(location, Database::centro));
        std::filesystem::path name = live.stem();
        name += u"." + String(word);
        name += live.extension();
        return (live.parent_path() / name).u16string();
    }
    std::filesystem::path folder(StringView location) override
    {
        const std::filesystem::path live = resolved(pathOf(location, Database::centro));
        return live.has_parent_path() ? live.parent_path() : ".";
    }
    bool backup(Connection& connection, const std::filesystem::path& file) override
    {
        dynamic_cast<SqliteConnection&>(connection).pool().backup(file);
        return true;
    }
    bool install(StringView location, const std::filesystem::path& live, StringView kept) override
    {
        const std::unique_ptr<SchoolToBe> making = make(location, kept);
        for (const Database which : everyDatabase) {
            const std::filesystem::path file = pathOf(making->location(), which);
            std::error_code error;
            std::filesystem::copy_file(fileOf(live, which), file, error);
            if (!error)
                error = owneronly::flush(file);
            // The library tells a disk that fills up meanwhile as one that fails.
            std::error_code ignored;
            if (error == std::errc::io_error && std::filesystem::space(folder(location), ignored).available <
                                                    std::filesystem::file_size(fileOf(live, which), ignored))
                error = std::make_error_code(std::errc::no_space_on_device);
            if (error)
                throw std::filesystem::filesystem_error("no se puede escribir", file, error);
        }
        making->putInPlace();
        owneronly::flush(folder(location));
        return true;
    }
    std::unique_ptr<SchoolToBe> make(StringView location, StringView kept) override
    {
        const std::filesystem::path live = pathOf(location, Database::centro);
        if (kept.empty())
            return std::make_unique<FilesToBe>(live, std::filesystem::path());
        for (const Database which : everyDatabase)
            if (resolved(pathOf(location, which)) != fileOf(resolved(live), which))
                failFor(
                    pathOf(location, which),
                    u"es un enlace y los otros dos ficheros no están al lado de aquel al que lleva: use el "
                    u"nombre de los ficheros mismos.");
        return std::make_unique<FilesToBe>(resolved(live), pathOf(kept, Database::centro));
    }
    std::vector<String> damage(Connection& connection) override
    {
        std::vector<String> result;
        try {
            const RecordsetPtr rows = connection.executeNative(u"PRAGMA integrity_check(20)");
            for (; !rows->Eof(); rows->MoveNext())
                // Header line: above the first finding the engine names the database.
                if (const String found = CStr(rows->row().front()); found != u"ok")
                    result.push_back(found.starts_with(u'*') ? found.substr(found.find(u'\n') + 1) : found);
        } catch (const DataError& error) {
            if (error.number() != failure::otherData)
                throw;
            result.push_back(error.engineText());
        }
        return result;
    }
    bool scrub(Connection& connection) override
    {
        try {
            // Free room in pages keeps what once stood there; the log keeps pages as they were.
            connection.executeNative(u"VACUUM");
            const RecordsetPtr rows = connection.executeNative(u"PRAGMA wal_checkpoint(TRUNCATE)");
            return CLng(rows->Fields(u"busy")) == 0;
        } catch (const DataError& error) {
            if (error.number() != failure::locked)
                throw;
            return false;
        }
    }
    ConnectionPtr create(StringView location, Database which) override
    {
        return opened(location, which, OpenAs::fresh);
    }
    void remove(StringView location, Database which) override { removeFile(pathOf(location, which)); }
    ConnectionPtr temporary(StringView /*location*/, Database /*which*/) override
    {
        return std::make_shared<SqliteConnection>(std::make_shared<Pool>(reuse_));
    }
    std::vector<FoundTable> tables(Connection& connection) override
    {
        std::vector<FoundTable> result;
        const RecordsetPtr rows = connection.executeNative(
            u"SELECT t.name, c.name FROM sqlite_schema t JOIN pragma_table_info(t.name) c "
            u"WHERE t.type='table' AND t.name NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY t.rowid, c.cid");
        for (; !rows->Eof(); rows->MoveNext()) {
            const std::vector<Value> found = rows->row();
            if (result.empty() || result.back().name != CStr(found[0]))
                result.push_back({CStr(found[0]), {}});
            result.back().columns.push_back(CStr(found[1]));
        }
        return result;
    }

private:
    ConnectionPtr opened(StringView location, Database which, OpenAs as) const
    {
        const std::filesystem::path live = pathOf(location, Database::centro);
        while (true) {
            if (as != OpenAs::fresh)
                finishReplacing(live);
            auto connection = std::make_shared<SqliteConnection>(
                std::make_shared<Pool>(pathOf(location, which), as, durability_, reuse_));
            // Race: a restore may have begun meanwhile, and would leave this file behind.
            if (as == OpenAs::fresh || !isBeingReplaced(live))
                return connection;
        }
    }

    Durability durability_;
    Reuse reuse_;
};

} // namespace
} // namespace sqlite

std::unique_ptr<Engine> sqliteEngine(Durability durability, Reuse reuse)
{
    return std::make_unique<sqlite::SqliteEngine>(durability, reuse);
}

} // namespace zv
