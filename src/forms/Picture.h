#pragma once

#include "runtime/String.h"

namespace zv {

/// A picture file that was found good; an empty file name is no picture. Views decode it.
struct Picture {
    String file;
    bool operator==(const Picture&) const = default;
};

/// "" is no picture; a file that is missing fails with 53, one that is no picture (icon, bitmap, PNG, JPEG,
/// GIF) with 481.
Picture LoadPicture(StringView file);

} // namespace zv
