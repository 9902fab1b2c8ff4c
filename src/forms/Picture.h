#pragma once

#include "runtime/String.h"

namespace zv {

/// Path of a picture file whose format was checked; an empty path is no picture. Views decode it.
struct Picture {
    String file;
    bool operator==(const Picture&) const = default;
};

/// Checks the file: "" gives no picture; one that is missing fails with 53, one of no known format (icon,
/// bitmap, PNG, JPEG, GIF) with 481.
Picture LoadPicture(StringView file);

} // namespace zv
