#pragma once

#include <functional>
#include <memory>

namespace zv {

/// Registers a cleanup callback for resetSingles().
void onReset(std::function<void()> undo);
/// Destroys every single instance, in reverse order of creation, so that a test or a guion starts from the
/// state of a new process. The next use creates one anew.
void resetSingles();

/// The single instance of a class (singleton with a reset): created at its first use, lives until
/// resetSingles() or the end of the process. `singleSlot` is its storage.
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
/// Whether the instance exists; does not create it.
template <class T>
bool hasSingle()
{
    return static_cast<bool>(singleSlot<T>());
}

} // namespace zv
