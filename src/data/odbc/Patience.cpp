#include "data/odbc/Patience.h"

#include <algorithm>
#include <charconv>
#include <condition_variable>
#include <filesystem>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#ifdef __linux__
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#endif

namespace zv::odbc {
#ifdef __linux__
namespace {

namespace fs = std::filesystem;

const fs::path ownFiles = "/proc/self/fd";

/// Whether it is on its way to a machine that has not answered yet.
bool isConnecting(int file)
{
    int domain = 0;
    int type = 0;
    socklen_t size = sizeof domain;
    getsockopt(file, SOL_SOCKET, SO_DOMAIN, &domain, &size);
    getsockopt(file, SOL_SOCKET, SO_TYPE, &type, &size);
    return type == SOCK_STREAM && (domain == AF_INET || domain == AF_INET6);
}

/// Filters out local sockets that are no database's, such as those of a desktop's services.
bool leadsToServer(int file, bool alsoConnecting)
{
    sockaddr_un peer{};
    socklen_t size = sizeof peer;
    // NOLINTNEXTLINE(*-reinterpret-cast): sockets take their addresses so.
    if (getpeername(file, reinterpret_cast<sockaddr*>(&peer), &size) != 0)
        return alsoConnecting && errno == ENOTCONN && isConnecting(file);
    const std::string_view path(peer.sun_path, strnlen(peer.sun_path, sizeof peer.sun_path));
    return peer.sun_family != AF_UNIX || path.find(".s.PGSQL.") != std::string_view::npos ||
           path.ends_with(".sock");
}

} // namespace

std::set<std::string> Socket::open()
{
    std::set<std::string> result;
    std::error_code ignored;
    for (fs::directory_iterator each(ownFiles, ignored); each != fs::directory_iterator();
         each.increment(ignored)) {
        const std::string name = fs::read_symlink(each->path(), ignored).string();
        if (name.starts_with("socket:"))
            result.insert(name + ' ' + each->path().filename().string());
    }
    return result;
}

void Socket::expect() { before_ = open(); }

void Socket::find(bool alsoConnecting)
{
    if (!before_)
        return;
    std::vector<int> fresh;
    for (const std::string& each : open()) {
        int file = -1;
        std::from_chars(each.data() + each.find(' ') + 1, each.data() + each.size(), file);
        if (!before_->contains(each) && leadsToServer(file, alsoConnecting))
            fresh.push_back(file);
    }
    if (fresh.size() == 1)
        copy_ = fcntl(fresh.front(), F_DUPFD_CLOEXEC, 0);
    before_.reset();
}

void Socket::noticeSilentNetwork()
{
    constexpr unsigned milliseconds = 10'000;
    constexpr int idle = 4;
    constexpr int interval = 2;
    constexpr int probes = 3;
    constexpr int on = 1;
    // On a local socket they fail, and nothing is lost.
    setsockopt(copy_, IPPROTO_TCP, TCP_USER_TIMEOUT, &milliseconds, sizeof milliseconds);
    setsockopt(copy_, SOL_SOCKET, SO_KEEPALIVE, &on, sizeof on);
    setsockopt(copy_, IPPROTO_TCP, TCP_KEEPIDLE, &idle, sizeof idle);
    setsockopt(copy_, IPPROTO_TCP, TCP_KEEPINTVL, &interval, sizeof interval);
    setsockopt(copy_, IPPROTO_TCP, TCP_KEEPCNT, &probes, sizeof probes);
}

Socket::~Socket()
{
    if (copy_ >= 0)
        close(copy_);
}

std::optional<bool> Socket::ended() const
{
    if (copy_ < 0)
        return std::nullopt;
    pollfd state{copy_, POLLRDHUP, 0};
    return poll(&state, 1, 0) > 0;
}

bool Socket::leadsTo(long process, long port) const
{
    sockaddr_storage own{};
    socklen_t size = sizeof own;
    // NOLINTBEGIN(*-reinterpret-cast): sockets take their addresses so.
    if (copy_ < 0 || getsockname(copy_, reinterpret_cast<sockaddr*>(&own), &size) != 0)
        return false;
    if (own.ss_family == AF_INET)
        return ntohs(reinterpret_cast<const sockaddr_in&>(own).sin_port) == port;
    if (own.ss_family == AF_INET6)
        return ntohs(reinterpret_cast<const sockaddr_in6&>(own).sin6_port) == port;
    // NOLINTEND(*-reinterpret-cast)
    ucred listens{};
    size = sizeof listens;
    std::string state;
    std::getline(std::ifstream("/proc/" + std::to_string(process) + "/stat"), state);
    // Number, name in parentheses, a letter, the parent's number.
    const std::size_t name = state.rfind(") ");
    return getsockopt(copy_, SOL_SOCKET, SO_PEERCRED, &listens, &size) == 0 && name != std::string::npos &&
           std::atol(state.c_str() + name + 4) == listens.pid;
}

bool Socket::cut()
{
    find(true);
    return copy_ >= 0 && shutdown(copy_, SHUT_RDWR) == 0;
}

namespace {

/// Starts a thread with all signals blocked, so that they stay the host's.
std::thread quietThread(const std::function<void()>& life)
{
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, &before);
    std::thread result(life);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return result;
}

} // namespace
#else
// Not supported: such a system does not list a process's sockets.
std::set<std::string> Socket::open() { return {}; }
void Socket::expect() {}
void Socket::find(bool /*alsoConnecting*/) {}
void Socket::noticeSilentNetwork() {}
Socket::~Socket() = default;
std::optional<bool> Socket::ended() const { return std::nullopt; }
bool Socket::leadsTo(long /*process*/, long /*port*/) const { return false; }
bool Socket::cut() { return false; }
static std::thread quietThread(const std::function<void()>& life) { return std::thread(life); }
#endif

/// Timer thread shared by all connections of the process (reference-counted): it ends with the last one.
class Watchdog {
public:
    static std::shared_ptr<Watchdog> shared()
    {
        static std::mutex one;
        static std::weak_ptr<Watchdog> known;
        const std::lock_guard lock(one);
        std::shared_ptr<Watchdog> result = known.lock();
        if (!result)
            known = result = std::make_shared<Watchdog>();
        return result;
    }
    Watchdog() : thread_(quietThread([this] { run(); })) {}
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;
    ~Watchdog()
    {
        {
            const std::lock_guard lock(mutex_);
            over_ = true;
        }
        change_.notify_one();
        thread_.join();
    }
    void add(Patience& one)
    {
        const std::lock_guard lock(mutex_);
        all_.push_back(&one);
    }
    void remove(Patience& one)
    {
        const std::lock_guard lock(mutex_);
        std::erase(all_, &one);
    }
    /// Wakes the thread only if it sleeps beyond that deadline, so that most statements cost no context
    /// switch.
    void set(Patience& one, Patience::Clock::time_point deadline)
    {
        const std::lock_guard lock(mutex_);
        one.deadline_ = deadline;
        if (deadline >= awake_)
            return;
        awake_ = deadline;
        change_.notify_one();
    }

private:
    void run()
    {
        std::unique_lock lock(mutex_);
        while (!over_) {
            awake_ = Patience::Clock::time_point::max();
            const auto now = Patience::Clock::now();
            for (Patience* each : all_) {
                if (each->deadline_ <= now) {
                    each->deadline_ = Patience::Clock::time_point::max();
                    each->ranOut_ = each->socket_.cut();
                }
                awake_ = std::min(awake_, each->deadline_);
            }
            if (awake_ == Patience::Clock::time_point::max())
                change_.wait(lock);
            else
                change_.wait_until(lock, awake_);
        }
    }

    std::mutex mutex_;
    std::condition_variable change_;
    std::vector<Patience*> all_;
    Patience::Clock::time_point awake_ = Patience::Clock::time_point::max(); ///< Time of the next check.
    bool over_ = false;
    std::thread thread_; ///< Last member: it starts when the others are initialised.
};

Patience::Patience(Socket& socket, std::chrono::seconds longest) : socket_(socket), longest_(longest)
{
    if (!socket.isWithinReach() || longest.count() == 0)
        return;
    watchdog_ = Watchdog::shared();
    watchdog_->add(*this);
}

Patience::~Patience()
{
    if (watchdog_)
        watchdog_->remove(*this);
}

void Patience::begin()
{
    if (watchdog_)
        watchdog_->set(*this, Clock::now() + longest_);
}

void Patience::end()
{
    if (watchdog_)
        watchdog_->set(*this, Clock::time_point::max());
}

} // namespace zv::odbc
