#pragma once

#include "data/ServerAway.h"

#include <functional>

namespace zv {
class QtDesktop;
}

namespace zv::host {

/// Ends the process at once, with the settings on disk. Without unwinding: the routine that waits would run
/// its next statements, and write half a save if the server came back meanwhile.
[[noreturn]] void endProcess();

/// RAII guard: as long as it lives, a window over the others asks a person what to do when a statement of
/// this thread finds its server away. Who goes on without it is not asked for the other statements of a save,
/// but again after a few messages: some dialogs repeat a statement until it succeeds.
class ServerWait {
public:
    /// `end` ends the process, when what was typed in the desktop's windows is on the disk, or a person lets
    /// it go.
    explicit ServerWait(const QtDesktop& desktop, std::function<void()> end = endProcess);
    ServerWait(const ServerWait&) = delete;
    ServerWait& operator=(const ServerWait&) = delete;
    ~ServerWait();

private:
    bool waited(const ServerAway& away);
    bool kept();

    const QtDesktop& desktop_;
    std::function<void()> end_;
    WaitForServer wait_ = [this](const ServerAway& away) { return waited(away); };
    int toldThen_ = 0; ///< How many messages the desktop had shown when the server was given up last.
};

} // namespace zv::host
