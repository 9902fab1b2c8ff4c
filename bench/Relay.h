#pragma once

#include <arpa/inet.h>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <netinet/tcp.h>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace zv::bench {

/// One direction of a connection: what is put in comes out after a while, at whatever rate it went in.
class Delayed {
public:
    using Clock = std::chrono::steady_clock;

    explicit Delayed(int to) : to_(to), sender_([this] { send(); }) {}
    Delayed(const Delayed&) = delete;
    Delayed& operator=(const Delayed&) = delete;
    ~Delayed()
    {
        put({}, Clock::now());
        sender_.join();
    }
    /// An empty one ends it.
    void put(std::string bytes, Clock::time_point due)
    {
        const std::lock_guard lock(mutex_);
        waiting_.emplace_back(due, std::move(bytes));
        changed_.notify_one();
    }

private:
    void send()
    {
        for (;;) {
            std::unique_lock lock(mutex_);
            changed_.wait(lock, [&] { return !waiting_.empty(); });
            auto [due, bytes] = std::move(waiting_.front());
            waiting_.pop_front();
            lock.unlock();
            if (bytes.empty())
                break;
            std::this_thread::sleep_until(due);
            for (std::string_view rest = bytes; !rest.empty();) {
                const ssize_t sent = ::send(to_, rest.data(), rest.size(), MSG_NOSIGNAL);
                if (sent <= 0)
                    return;
                rest.remove_prefix(static_cast<std::size_t>(sent));
            }
        }
        shutdown(to_, SHUT_WR);
    }

    int to_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::pair<Clock::time_point, std::string>> waiting_;
    std::thread sender_;
};

/// Relay before a server of this machine: holds up what passes as a network would, and counts round trips. It
/// lasts as long as the process.
class Relay {
public:
    using Clock = Delayed::Clock;

    /// `server`: the path of its Unix socket.
    explicit Relay(std::string server) : server_(std::move(server))
    {
        const int listening = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in place{};
        place.sin_family = AF_INET;
        place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof place;
        // The interface of sockets. NOLINTBEGIN(*-reinterpret-cast)
        if (bind(listening, reinterpret_cast<sockaddr*>(&place), size) != 0 || listen(listening, 16) != 0 ||
            getsockname(listening, reinterpret_cast<sockaddr*>(&place), &size) != 0)
            throw std::runtime_error("no port to listen at");
        // NOLINTEND(*-reinterpret-cast)
        port = ntohs(place.sin_port);
        std::thread([this, listening] {
            for (int client = 0; (client = accept(listening, nullptr, nullptr)) >= 0;)
                std::thread([this, client] { serve(client); }).detach();
        }).detach();
    }
    Relay(const Relay&) = delete;
    Relay& operator=(const Relay&) = delete;
    ~Relay() = delete;

    std::uint16_t port = 0; ///< Where it listens, on 127.0.0.1.
    /// How long a question and its answer take together on their way.
    std::atomic<std::chrono::milliseconds> away{};
    /// How often a client that had been answered said something more.
    std::atomic<int> trips = 0;

private:
    void serve(int client)
    {
        const int server = socket(AF_UNIX, SOCK_STREAM, 0);
        sockaddr_un place{};
        place.sun_family = AF_UNIX;
        server_.copy(place.sun_path, sizeof place.sun_path - 1);
        const int atOnce = 1;
        setsockopt(client, IPPROTO_TCP, TCP_NODELAY, &atOnce, sizeof atOnce);
        // The interface of sockets. NOLINTNEXTLINE(*-reinterpret-cast)
        if (connect(server, reinterpret_cast<const sockaddr*>(&place), sizeof place) == 0) {
            std::atomic<bool> answered = true;
            std::thread answers([&] {
                Delayed pipe(client);
                pump(server, pipe, [&] { answered = true; });
            });
            {
                Delayed pipe(server);
                pump(client, pipe, [&] {
                    if (answered.exchange(false))
                        ++trips;
                });
            }
            answers.join();
        }
        close(server);
        close(client);
    }
    template <class Seen>
    void pump(int from, Delayed& to, Seen&& seen)
    {
        std::string bytes(64 * 1024, '\0');
        for (ssize_t got = 0; (got = recv(from, bytes.data(), bytes.size(), 0)) > 0;) {
            const auto size = static_cast<std::size_t>(got);
            seen();
            to.put(bytes.substr(0, size), Clock::now() + std::chrono::microseconds(away.load()) / 2);
        }
    }
    std::string server_;
};

} // namespace zv::bench
