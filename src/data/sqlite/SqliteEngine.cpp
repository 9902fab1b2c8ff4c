#include "data/sqlite/SqliteEngine.h"

#include "data/Dialect.h"
#include "data/sqlite/Store.h"

#include <sqlite3.h>

#include <algorithm>

namespace zv {
namespace sqlite {
namespace {

constexpr Dialect dialect{.joinTexts = u"||", .deleteWithStar = false};

/// The rows of a statement. It keeps the database open, so that it may outlive its connection.
class Rows final : public Recordset {
public:
    Rows(std::shared_ptr<Store> store, String statement, std::unique_ptr<Cursor> cursor)
        : store_(std::move(store)), statement_(std::move(statement)), cursor_(std::move(cursor))
    {}

    bool Eof() override { return opened().row() == nullptr; }
    void MoveNext() override
    {
        present();
        cursor_->advance();
    }
    void MoveFirst() override
    {
        if (opened().row() && cursor_->isOnFirst())
            return;
        if (!cursor_->onlyReads())
            refuse(failure::otherData, u"una instrucción que escribe no se repite");
        cursor_ = store_->run(statement_);
    }
    Value Fields(StringView name) override
    {
        const std::vector<String>& names = opened().names();
        const auto found =
            std::ranges::find_if(names, [&](const String& each) { return sameName(each, name); });
        if (found == names.end())
            refuse(failure::unknownField, name);
        return value(present()[static_cast<std::size_t>(found - names.begin())]);
    }
    std::vector<Value> row() override
    {
        std::vector<Value> result;
        for (const Cursor::Field& field : present())
            result.push_back(value(field));
        return result;
    }
    Long State() const override { return cursor_ ? 1 : 0; }
    void Close() override
    {
        opened();
        cursor_.reset();
        store_.reset();
    }

private:
    Cursor& opened() const
    {
        if (!cursor_)
            refuse(failure::closedRecordset);
        return *cursor_;
    }
    const Cursor::Row& present() const
    {
        const Cursor::Row* row = opened().row();
        if (!row)
            refuse(failure::noRow);
        return *row;
    }
    Value value(const Cursor::Field& field) const
    {
        if (!field)
            refuse(failure::otherData, u"el campo contiene bytes y no se puede leer");
        return *field;
    }
    [[noreturn]] void refuse(std::int32_t number, StringView detail = {}) const
    {
        throw DataError(number, "", detail, statement_);
    }

    std::shared_ptr<Store> store_;
    String statement_;
    std::unique_ptr<Cursor> cursor_;
};

class SqliteConnection final : public Connection {
public:
    explicit SqliteConnection(std::shared_ptr<Store> store) : store_(std::move(store)) {}

    RecordsetPtr Execute(StringView statement) override
    {
        String room;
        return executeNative(inDialect(statement, dialect, room));
    }
    RecordsetPtr executeNative(StringView statement) override
    {
        std::unique_ptr<Cursor> cursor = store_->run(statement);
        return std::make_shared<Rows>(store_, String(statement), std::move(cursor));
    }
    EngineInfo engine() override { return {u"SQLite", fromUtf8(sqlite3_libversion())}; }

private:
    std::shared_ptr<Store> store_;
};

std::filesystem::path fileOf(StringView location, Database which)
{
    const std::string path = toUtf8(location);
    std::filesystem::path live(std::u8string(path.begin(), path.end()));
    if (which == Database::centro || live.empty())
        return live;
    std::filesystem::path name = live.stem();
    name += which == Database::borrado ? u".borrado" : u".entrada";
    name += live.extension();
    return live.parent_path() / name;
}

class SqliteEngine final : public Engine {
public:
    explicit SqliteEngine(Durability durability) : durability_(durability) {}
    StringView scheme() const override { return u"sqlite"; }
    DdlStyle ddl() const override { return DdlStyle::sqlite; }
    ConnectionPtr open(StringView location, Database which) override
    {
        return opened(location, which, Opening::existing);
    }
    ConnectionPtr inspect(StringView location, Database which) override
    {
        return opened(location, which, Opening::lookOnly);
    }
    ConnectionPtr create(StringView location, Database which) override
    {
        return opened(location, which, Opening::fresh);
    }
    void remove(StringView location, Database which) override { removeFile(fileOf(location, which)); }
    ConnectionPtr temporary(StringView /*location*/, Database /*which*/) override
    {
        return std::make_shared<SqliteConnection>(std::make_shared<Store>());
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
    ConnectionPtr opened(StringView location, Database which, Opening opening) const
    {
        return std::make_shared<SqliteConnection>(
            std::make_shared<Store>(fileOf(location, which), opening, durability_));
    }

    Durability durability_;
};

} // namespace
} // namespace sqlite

std::unique_ptr<Engine> sqliteEngine(Durability durability)
{
    return std::make_unique<sqlite::SqliteEngine>(durability);
}

} // namespace zv
