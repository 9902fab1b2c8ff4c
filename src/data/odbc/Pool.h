#pragma once

#include "data/Handles.h"
#include "data/odbc/Link.h"
#include "data/odbc/Server.h"
#include "data/odbc/Servers.h"

#include <chrono>
#include <map>
#include <memory>
#include <optional>

namespace zv::odbc {

/// Circuit breaker of a server, shared by the databases of a school.
struct Outage {
    using Clock = std::chrono::steady_clock;
    int losses = 0;                   ///< Number of links lost so far.
    Clock::time_point until;          ///< Open until then: new links fail at once.
    std::optional<DataError> failure; ///< The failure that opened it, repeated meanwhile.
    bool givenUp = false;             ///< A statement was not waited for, and no link has opened since.
};

/// A database on a server, and how a pool opens links to it.
struct Target {
    const Server* server = nullptr;
    String connectionText; ///< For any of the servers.
    std::shared_ptr<Servers> servers;
    String schema;                   ///< Empty on servers without schemas.
    String selection;                ///< Statement that selects it on a new link; empty if none does.
    std::chrono::seconds patience{}; ///< Timeout of a driver's call, see Link.
    std::vector<String> settings;    ///< Statements run on each new link.
    std::shared_ptr<Outage> outage;
};

/// Connection pool of a database. A statement runs on an idle link (without cursors), so that what it writes
/// is committed when it returns.
class Pool {
public:
    explicit Pool(Target target);

    const Target& target() const { return target_; }
    /// Runs a statement and reads its first rows; nullptr if it has no columns. A link lost during a
    /// statement fails with connectionLost, once: the next statement reconnects, unless it belongs to the
    /// same transaction. One lost while idle is replaced silently, and waited for where the program has
    /// somebody to wait (ServerAway.h).
    std::unique_ptr<Cursor> run(StringView statement);
    EngineInfo engine();
    /// As its driver finds them; on servers without schemas.
    std::vector<FoundTable> tables();

private:
    struct TableIndexes {
        std::vector<UniqueIndex> unique;
        std::vector<String> primaryKey; ///< Columns.
    };

    std::shared_ptr<Link> link();
    std::shared_ptr<Link> open() const;
    void refuseSharing(const std::shared_ptr<Link>& fresh, StringView text) const;
    std::shared_ptr<Link> freshLink();
    std::shared_ptr<Link> awaitedLink();
    void noticeLosses();
    void pauseAfter(const DataError& failure);
    bool controlsTransaction(StringView statement);
    std::unique_ptr<Cursor> send(StringView statement, const std::shared_ptr<Link>& on);
    TableIndexes indexesOf(StringView table, const std::shared_ptr<Link>& on);
    bool isTakenKey(const DataError& failure, const std::shared_ptr<Link>& on);

    Target target_;
    Handles<Link> links_;
    std::map<String, TableIndexes> indexes_; ///< Cache by the table's name in lower case.
    int lossesSeen_ = 0;
    std::shared_ptr<Link> transaction_; ///< Link of the transaction until it ends, lost or not; or nullptr.
    std::optional<DataError> undone_;   ///< Conflict for which the server took the transaction back.
};

} // namespace zv::odbc
