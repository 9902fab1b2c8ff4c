#pragma once

#include "data/Cursor.h"
#include "data/Engine.h"
#include "data/UniqueIndex.h"
#include "data/odbc/Failure.h"
#include "data/odbc/Patience.h"

#include <memory>
#include <vector>

namespace zv::odbc {

/// A handle of the driver manager, of any kind; it is freed by its kind.
class DriverHandle {
public:
    DriverHandle(std::int16_t kind, void* parent);
    DriverHandle(const DriverHandle&) = delete;
    DriverHandle& operator=(const DriverHandle&) = delete;
    ~DriverHandle();

    void* get() const { return handle_; }
    /// What the driver told last about this handle.
    Diagnosis diagnosis() const;

private:
    std::int16_t kind_;
    void* handle_ = nullptr;
};

class StatementRows;

/// One connection of a driver. A statement that returned is committed, but between begin() and end().
class Link {
public:
    /// Fails with connectionLost if nobody answers. Where a call of the driver hears nothing for `patience`,
    /// the link is cut and lost; zero: it waits without end.
    Link(StringView connectionText, std::chrono::seconds patience);
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;
    ~Link();

    /// Name and version of the engine behind it, as the driver gives them.
    EngineInfo engine() const;
    /// The tables of a schema (any, if empty), with their columns.
    std::vector<FoundTable> tables(StringView schema);
    /// The unique indexes of a table, and the columns of its primary key. Names are those of the server's
    /// lists, in their letters; where the driver has no such list there are none.
    std::vector<UniqueIndex> uniqueIndexes(StringView schema, StringView table);
    std::vector<String> primaryKey(StringView schema, StringView table);
    void begin();
    void end(bool commit);

    /// What a statement failed with. A connection that is lost stays so.
    DataError failure(const DriverHandle& handle, StringView text);
    bool isLost() const { return lost_; }
    /// The server went on saying nothing.
    bool wasCut() const { return patience_.ranOut(); }
    /// Whether it was ended from outside while it stood idle; nothing where only a statement tells.
    std::optional<bool> wasEnded() const { return socket_.ended(); }
    /// Since its last statement.
    Patience::Clock::duration idle() const { return Patience::Clock::now() - used_; }
    void* get() const { return connection_.get(); }
    /// A call of the driver that may wait for the server.
    template <class Call>
    std::int16_t waiting(Call&& call)
    {
        patience_.begin();
        const std::int16_t result = call();
        patience_.end();
        used_ = Patience::Clock::now();
        return result;
    }

    std::vector<StatementRows*> cursors; ///< Those whose rows it still holds.

private:
    void connect(StringView connectionText);
    void check(std::int16_t result, StringView text);

    DriverHandle connection_;
    Socket socket_;
    std::chrono::seconds longest_;
    Patience patience_;
    Patience::Clock::time_point used_ = Patience::Clock::now();
    bool lost_ = false;
};

/// The rows of a statement that runs on a link.
class StatementRows final : public Cursor {
public:
    StatementRows(std::shared_ptr<Link> link, StringView statement);
    ~StatementRows() override;
    bool onlyReads() const override { return onlyReads_; }
    bool hasColumns() const { return !kinds_.empty(); }

private:
    /// What a column is read as.
    enum class Kind { whole, decimal, text, bytes };

    bool read(Row& row) override;
    void finish() override;
    void describe();
    static Kind kindOf(std::int16_t type);
    Field field(std::uint16_t column, Kind kind);
    Value text(std::uint16_t column);
    void check(std::int16_t result);

    std::shared_ptr<Link> link_;
    std::unique_ptr<DriverHandle> handle_;
    String statement_;
    std::vector<Kind> kinds_;
    bool onlyReads_ = true;
};

} // namespace zv::odbc
