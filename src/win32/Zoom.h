#pragma once

#include "views/Magnification.h"

namespace zv::win32 {

/// Magnification of the dialogs, kept in the registry of the person.
class Zoom final : public Magnification {
public:
    /// Reads what was set last, and from now on keeps what is set.
    void remember();
};

} // namespace zv::win32
