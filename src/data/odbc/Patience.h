#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <set>
#include <string>

namespace zv::odbc {

/// The socket below a driver's connection, which no driver shows: the only one that this process has more
/// after the driver connected. Where that is not told (another thread connected meanwhile, or the system does
/// not list what a process has open) it is not known.
class Socket {
public:
    /// Connects by `connect`, and finds the socket.
    template <class Connect>
    explicit Socket(Connect&& connect)
    {
        const std::set<std::string> before = open();
        connect();
        find(before);
    }
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;
    ~Socket();

    /// Whether the server has ended the connection, or the network has; nothing where it is not known.
    std::optional<bool> ended() const;
    /// Whoever waits for the server on it is told that the connection is gone.
    void cut();

private:
    static std::set<std::string> open();
    void find(const std::set<std::string>& before);

    int copy_ = -1; ///< So that the number stays this socket's, whatever the driver closes.
};

class Watchdog;

/// How long a connection waits for a server that says nothing, at each call of its driver: then the
/// connection is cut. Drivers wait without end as long as the server's machine answers for it.
class Patience {
public:
    using Clock = std::chrono::steady_clock;

    /// Zero: without end.
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
    Clock::time_point deadline_ = Clock::time_point::max(); ///< Of the call that waits now.
    bool ranOut_ = false;
};

} // namespace zv::odbc
