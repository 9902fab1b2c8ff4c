#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <set>
#include <string>

namespace zv::odbc {

/// Duplicate of the socket below a driver's connection, which ODBC does not expose: found as the one
/// descriptor that is new after connecting. Unknown if there is not exactly one (another thread connected
/// meanwhile), or the system does not list a process's descriptors.
class Socket {
public:
    Socket() = default;
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;
    ~Socket();

    /// To be called before connecting, and find() afterwards; or, with `alsoConnecting`, meanwhile.
    void expect();
    void find(bool alsoConnecting = false);
    /// Whether it is known, or can be found while a call connects.
    bool isWithinReach() const { return copy_ >= 0 || before_; }
    /// A network that no longer answers ends it within ten seconds, also under a call.
    void noticeSilentNetwork();
    /// Whether the peer or the network closed the connection; nullopt if the socket is unknown.
    std::optional<bool> ended() const;
    /// Whether a server's process is at its other end, and nothing between: it sees the port of this side
    /// there, or on a local socket it is a child of who listens. False if the socket is unknown.
    bool leadsTo(long process, long port) const;
    /// Shuts the socket down, so that a thread blocked in a driver's call on it returns with an error. False
    /// if it is unknown.
    bool cut();

private:
    static std::set<std::string> open();

    std::optional<std::set<std::string>> before_; ///< Sockets that were open before, while one is expected.
    int copy_ = -1; ///< Duplicated descriptor: its number cannot be reused when the driver closes its own.
};

class Watchdog;

/// Timeout of a connection's blocking calls: a watchdog cuts the socket. Needed because drivers block for
/// ever while the server's kernel still acknowledges, though its process hangs.
class Patience {
public:
    using Clock = std::chrono::steady_clock;

    /// `longest` zero, or a socket out of reach: no timeout.
    Patience(Socket& socket, std::chrono::seconds longest);
    Patience(const Patience&) = delete;
    Patience& operator=(const Patience&) = delete;
    ~Patience();

    void begin();
    void end();
    bool ranOut() const { return ranOut_; }

private:
    friend Watchdog;

    Socket& socket_;
    std::chrono::seconds longest_;
    std::shared_ptr<Watchdog> watchdog_;
    Clock::time_point deadline_ = Clock::time_point::max(); ///< Of the current call; max(): none.
    bool ranOut_ = false;
};

} // namespace zv::odbc
