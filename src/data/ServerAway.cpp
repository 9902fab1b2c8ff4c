#include "data/ServerAway.h"

namespace zv {
namespace {

// Without destructors: one for a thread's end would keep a host from unloading the library.
thread_local const WaitForServer* port = nullptr;
thread_local int unattended = 0; ///< How many guards live.

} // namespace

void onServerAway(const WaitForServer* wait) { port = wait; }

bool waitsForServers() { return port != nullptr && unattended == 0; }

bool waitForServer(const ServerAway& away)
{
    const Unattended meanwhile;
    return (*port)(away);
}

Unattended::Unattended() { ++unattended; }
Unattended::~Unattended() { --unattended; }

} // namespace zv
