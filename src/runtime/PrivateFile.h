#pragma once

#include <filesystem>
#include <string_view>

namespace zv {

/// Creates a file that only its owner can read, and missing folders, atomically and durably: no reader ever
/// sees it incomplete, and it is synced to disk when this returns. False if it exists already. Fails with a
/// std::system_error.
bool createPrivateFile(const std::filesystem::path& file, std::string_view text);
/// Whether the machine lets anyone but the owner read or change the file, or its administrators where they
/// could take that right in any case.
bool openToOthers(const std::filesystem::path& file);

} // namespace zv
