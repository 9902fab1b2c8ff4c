#pragma once

#include "data/ConnectionText.h"
#include "data/odbc/Link.h"

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace zv::odbc {

/// Servers that hold the same databases: those of the attribute SERVIDORES («a:3306,b:3306»), or the single
/// one that the driver is told of. Shared by the databases of a school, so that all go to the same one.
class Servers {
public:
    /// Fails if SERVIDORES is no list.
    explicit Servers(const ConnectionText& location);

    /// Whether there is a list. Without one a server is asked nothing more.
    bool isList() const { return !places_.empty(); }
    /// Asks a server of a list whether it takes changes, and fails with connectionLost if not: a standby, a
    /// node that has lost the majority, a primary of old. Makes the link one of a cluster, where it is. Fails
    /// with another number if the link is not to where the list says.
    void requireServing(const std::shared_ptr<Link>& link);
    /// Of two primaries that were one, the one promoted later is right, and one that never was the same holds
    /// another's data: whether none was seen of another cluster, or with a higher timeline.
    bool noteTimeline(StringView cluster, Long timeline);
    /// Failover: calls `attempt` with a driver's connection string for each server until one does not fail
    /// with connectionLost, which is the first the next time. The others follow as they are written, so that
    /// the stations of a school meet at the same one, and where an administrator wants them. If all fail,
    /// what each said is told in one failure.
    void find(StringView connectionText, const std::function<void(StringView)>& attempt);

private:
    bool noteTimeline(const std::shared_ptr<Link>& link, StringView lineage);

    struct Place {
        String host;
        String port; ///< Empty: the driver's own.
    };
    static String shown(const Place& place);

    std::vector<Place> places_;
    /// The place that served last. A wait for it has a thread of its own.
    std::atomic<std::size_t> serving_ = 0;
    std::mutex seen_;
    String cluster_;    ///< Of the primary that served last, where one is told by its timeline.
    Long timeline_ = 0; ///< The highest that was seen of it.
};

} // namespace zv::odbc
