#pragma once

#include "robot/Portraits.h"

#include <filesystem>

namespace zv::win32 {

/// Draws every dialog (new, change, read-only, with a message) in windows of the system as pictures in a
/// folder, which is made: on a sample school, at the resolution of the screen, which has to be seen. Fails
/// with a RuntimeError if one cannot be written.
Gallery drawGallery(const std::filesystem::path& folder, const School& school);

} // namespace zv::win32
