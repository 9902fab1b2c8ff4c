#pragma once

#include "win32/System.h"

#include <filesystem>
#include <initializer_list>

namespace zv::win32 {

/// Writes windows as they stand on the screen into a PNG file, one over another, and nothing of what is
/// between them. Fails with a RuntimeError if the file cannot be written.
void savePicture(std::initializer_list<HWND> windows, const std::filesystem::path& file);

} // namespace zv::win32
