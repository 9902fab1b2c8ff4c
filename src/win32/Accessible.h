#pragma once

#include "win32/System.h"

#include <memory>

namespace zv::win32 {

/// RAII guard: as long as one lives on a thread, names are told through one service of the system, which is
/// costly to ask for.
class Naming {
public:
    Naming();
    Naming(const Naming&) = delete;
    Naming& operator=(const Naming&) = delete;
    ~Naming();

private:
    class Service;
    friend void tellName(HWND window, const String& name, const String& description);
    friend void tellGroup(HWND window, const String& name);

    static thread_local Service* current_;
    std::unique_ptr<Service> own_; ///< Of the first on its thread.
};

/// Sets what screen readers say of a window (dynamic annotation): its name, where it is not in the window
/// itself, and what is added to it. Without effect on systems that cannot be told.
void tellName(HWND window, const String& name, const String& description);
/// The same for what stands for a group of controls.
void tellGroup(HWND window, const String& name);

} // namespace zv::win32
