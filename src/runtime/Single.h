#pragma once

#include <functional>
#include <memory>

namespace zv {

/// Keeps what undoes each single instance, so that a test or a guion can start from a new process state.
void onReset(std::function<void()> undo);
/// Ends every single instance, the youngest first. The next use of a name creates it anew.
void resetSingles();

/// The one global instance of a class, created at its first use and kept until the process ends.
template <class T>
std::unique_ptr<T>& singleSlot()
{
    static std::unique_ptr<T> slot;
    return slot;
}
template <class T>
T& single()
{
    std::unique_ptr<T>& slot = singleSlot<T>();
    if (!slot) {
        slot = std::make_unique<T>();
        onReset([&slot] { slot.reset(); });
    }
    return *slot;
}
/// Whether the instance exists already; asking does not create it.
template <class T>
bool hasSingle()
{
    return static_cast<bool>(singleSlot<T>());
}

} // namespace zv
