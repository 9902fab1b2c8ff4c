#pragma once

#include "runtime/String.h"

#include <chrono>
#include <functional>
#include <optional>

namespace zv {

/// Why no connection to a server could be opened.
struct Absence {
    bool refuses = false; ///< It answered, and let nobody in: it is starting or full, or a password changed.
    String words;         ///< The driver's own.
};

/// A server that cannot be reached for a statement of which nothing has been sent yet.
struct ServerAway {
    std::chrono::steady_clock::time_point since; ///< When the first attempt began.
    Absence why;                                 ///< What came of it.
    bool givenUp = false; ///< The port has said no in this outage: no link has been opened since.
    /// Tries once more, which can take as long as the driver waits for an answer; nothing if the server is
    /// back. May run in another thread, one call at a time.
    std::function<std::optional<Absence>()> tryAgain;
};

/// Port to a person (dependency inversion): what a program with a screen does while a server is away. True
/// once the server is back, and the statement is sent; false if it is to fail.
using WaitForServer = std::function<bool(const ServerAway&)>;

/// Sets the calling thread's port, as windows belong to a thread; the caller keeps it alive, and nullptr
/// removes it. Without one a statement fails at once.
void onServerAway(const WaitForServer* wait);
/// Whether a statement of this thread may wait.
bool waitsForServers();
/// Calls the port. A statement run meanwhile on this thread, by a timer say, does not wait.
bool waitForServer(const ServerAway& away);

/// RAII guard of work that no person has asked for: on this thread nothing waits as long as it lives.
class Unattended {
public:
    Unattended();
    Unattended(const Unattended&) = delete;
    Unattended& operator=(const Unattended&) = delete;
    ~Unattended();
};

} // namespace zv
