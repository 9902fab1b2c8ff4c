#pragma once

#include "data/Handles.h"
#include "data/odbc/Link.h"
#include "data/odbc/Server.h"

#include <chrono>
#include <map>
#include <memory>
#include <optional>

namespace zv::odbc {

/// What is known of the losses of a server, the same for the databases of a school.
struct Outage {
    using Clock = std::chrono::steady_clock;
    int losses = 0;                   ///< How many links were lost so far.
    Clock::time_point until;          ///< So long nobody asks it again, since it let the last one wait.
    std::optional<DataError> failure; ///< What that one was told.
};

/// How a database of a server is reached.
struct Place {
    const Server* server = nullptr;
    String connectionText;
    String schema;                   ///< Where the server has them; else empty.
    std::chrono::seconds patience{}; ///< With a server that says nothing, as a link has it.
    std::vector<String> settings;    ///< Run on each new link.
    std::shared_ptr<Outage> outage;
};

/// A database: as many links as there are cursors open at a time. A statement runs on a link without cursors,
/// so that what it writes is committed when it returns.
class Pool {
public:
    explicit Pool(Place place);

    const Place& place() const { return place_; }
    /// Runs a statement and reads its first rows. None if it has no columns. A link that is lost under a
    /// statement fails with connectionLost, once: the next statement opens a new one. One that ended before
    /// is opened anew, and nobody is told.
    std::unique_ptr<Cursor> run(StringView statement);
    EngineInfo engine();
    std::vector<FoundTable> tables();

private:
    struct TableIndexes {
        std::vector<UniqueIndex> unique;
        std::vector<String> primaryKey; ///< Its columns.
    };

    std::shared_ptr<Link> link();
    std::shared_ptr<Link> freshLink();
    void noticeLosses();
    void pauseAfter(const DataError& failure);
    bool controlsTransaction(StringView statement);
    TableIndexes indexesOf(StringView table, const std::shared_ptr<Link>& on);
    bool isTakenKey(const DataError& failure, const std::shared_ptr<Link>& on);

    Place place_;
    Handles<Link> links_;
    std::map<String, TableIndexes> indexes_; ///< By the table's name in small letters.
    int lossesSeen_ = 0;
    std::shared_ptr<Link> transaction_; ///< The link on which one was begun.
};

} // namespace zv::odbc
