#include "data/ServerAway.h"

namespace zv {
namespace {

struct Waiter {
    WaitForServer wait;
    int unattended = 0; ///< How many guards live.
};

Waiter& waiter()
{
    static thread_local Waiter one;
    return one;
}

} // namespace

void onServerAway(WaitForServer wait) { waiter().wait = std::move(wait); }

bool waitsForServers() { return waiter().wait && waiter().unattended == 0; }

bool waitForServer(const ServerAway& away)
{
    const Unattended meanwhile;
    return waiter().wait(away);
}

Unattended::Unattended() { ++waiter().unattended; }
Unattended::~Unattended() { --waiter().unattended; }

} // namespace zv
