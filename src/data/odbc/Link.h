#pragma once

#include "data/Cursor.h"
#include "data/Engine.h"
#include "data/UniqueIndex.h"
#include "data/odbc/Failure.h"
#include "data/odbc/Patience.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace zv::odbc {

/// RAII owner of a handle of the driver manager, of any kind.
class DriverHandle {
public:
    DriverHandle(std::int16_t kind, void* parent);
    DriverHandle(const DriverHandle&) = delete;
    DriverHandle& operator=(const DriverHandle&) = delete;
    ~DriverHandle();

    void* get() const { return handle_; }
    /// Diagnostic record of the last call on this handle.
    Diagnosis diagnosis() const;

private:
    std::int16_t kind_;
    void* handle_ = nullptr;
};

class StatementRows;

/// Connection of a driver, in autocommit mode except between begin() and end().
class Link {
public:
    /// Connects; fails with connectionLost if the server does not answer. `patience` is the timeout of each
    /// call of the driver, after which the link is cut and lost; zero: none.
    Link(StringView connectionText, std::chrono::seconds patience);
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;
    ~Link();

    /// Name and version of the engine, as reported by the driver.
    EngineInfo engine() const;
    /// All tables that the driver finds, with their columns.
    std::vector<FoundTable> tables();
    /// Schema that catalogue queries are about; any, if its name is empty.
    struct Where {
        StringView schema;
        bool isCatalog = false; ///< What the driver calls a catalogue.
    };
    /// Catalogue queries: unique indexes of a table, columns of its primary key. Names match the server's
    /// catalogue with regard to case; the result is empty if the driver does not support them.
    std::vector<UniqueIndex> uniqueIndexes(Where where, StringView table);
    std::vector<String> primaryKey(Where where, StringView table);
    void begin();
    void end(bool commit);

    /// The error of the last call. Latches isLost().
    DataError failure(const DriverHandle& handle, StringView text);
    bool isLost() const { return lost_; }
    /// It is to serve nobody any more, as if it were lost.
    void abandon() { lost_ = true; }
    /// Whether a timeout cut the link.
    bool wasCut() const { return patience_ && patience_->ranOut(); }
    /// Whether the peer closed the connection while it was idle; nullopt if only a statement can tell.
    std::optional<bool> wasEnded() const { return socket_.ended(); }
    /// Whether that process of the server is at its other end, which sees that port; see Socket.
    bool leadsTo(long process, long port) const { return socket_.leadsTo(process, port); }
    /// Time since its last statement.
    Patience::Clock::duration idle() const { return Patience::Clock::now() - used_; }
    void* get() const { return connection_.get(); }
    void noticeSilentNetwork() { socket_.noticeSilentNetwork(); }
    /// Runs a blocking call of the driver under the timeout.
    template <class Call>
    std::int16_t waiting(Call&& call)
    {
        patience_->begin();
        const std::int16_t result = call();
        patience_->end();
        used_ = Patience::Clock::now();
        return result;
    }

    std::vector<StatementRows*> cursors; ///< Open cursors; the link is busy with them.

private:
    void connect(StringView connectionText);
    void check(std::int16_t result, StringView text);
    void forEachFound(const DriverHandle& statement, std::int16_t asked, const std::function<void()>& use);

    DriverHandle connection_;
    Socket socket_;
    std::chrono::seconds longest_;
    std::optional<Patience> patience_; ///< Of its calls, once it is connected.
    Patience::Clock::time_point used_ = Patience::Clock::now();
    bool lost_ = false;
};

/// Cursor of a statement that runs on a link.
class StatementRows final : public Cursor {
public:
    StatementRows(std::shared_ptr<Link> link, StringView statement);
    ~StatementRows() override;
    bool onlyReads() const override { return onlyReads_; }
    bool hasColumns() const { return !kinds_.empty(); }

private:
    /// Target type of a column.
    enum class Kind { whole, decimal, text, bytes };

    bool read(Row& row) override;
    void finish() override;
    void describe();
    static Kind kindOf(std::int16_t type);
    Field field(std::uint16_t column, Kind kind);
    Field text(std::uint16_t column);
    void check(std::int16_t result);

    std::shared_ptr<Link> link_;
    std::unique_ptr<DriverHandle> handle_;
    String statement_;
    std::vector<Kind> kinds_;
    bool onlyReads_ = true;
};

} // namespace zv::odbc
