#pragma once

#include <atomic>
#include <ctime>

namespace zv::zvconf {

/// RAII guard that defers signals (Ctrl-C and the like), so that what was begun is finished or removed; a
/// second one, a second later at least, ends the process at once. A signal that was ignored stays so:
/// `nohup`.
class Interruptions {
public:
    Interruptions();
    Interruptions(const Interruptions&) = delete;
    Interruptions& operator=(const Interruptions&) = delete;
    ~Interruptions();
    static bool came();

private:
    static void handle(void (*handler)(int));
    static void note(int signal);

    inline static std::atomic<std::time_t> came_ = 0;
    static_assert(decltype(came_)::is_always_lock_free);
};

} // namespace zv::zvconf
