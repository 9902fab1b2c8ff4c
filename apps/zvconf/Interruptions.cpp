#include "zvconf/Interruptions.h"

#include "zvconf/System.h"

#include <csignal>

namespace zv::zvconf {

Interruptions::Interruptions() { handle(note); }
Interruptions::~Interruptions() { handle(SIG_DFL); }

bool Interruptions::came() { return came_ != 0; }

void Interruptions::handle(void (*handler)(int))
{
    for (const int signal : endingSignals())
        if (std::signal(signal, handler) == SIG_IGN)
            std::signal(signal, SIG_IGN);
}

/// Signal handler. Debounced: some senders signal both the process and its group.
void Interruptions::note(int signal)
{
    // Some systems take the handler away when they call it.
    std::signal(signal, note);
    const std::time_t now = std::time(nullptr);
    if (came_ == 0) {
        came_ = now;
    } else if (now > came_ + 1) {
        std::signal(signal, SIG_DFL);
        std::raise(signal);
    }
}

} // namespace zv::zvconf
