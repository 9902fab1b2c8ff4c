#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace zv {

/// Bytes of a small file; nothing where they cannot be read: it is not there, it is a folder, or a permission
/// is missing.
std::optional<std::string> wholeFile(const std::filesystem::path& file);

} // namespace zv
