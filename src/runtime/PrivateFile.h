#pragma once

#include <filesystem>
#include <string_view>

namespace zv {

/// Makes a file that its owner alone can read, with its folders where they are missing; nobody ever sees it
/// unfinished, and it is on disk when this returns. False if there is one already. Fails with a
/// std::system_error.
bool createPrivateFile(const std::filesystem::path& file, std::string_view text);
/// Whether the machine lets anyone but the owner read or change the file, or its administrators where they
/// could take that right in any case.
bool openToOthers(const std::filesystem::path& file);

} // namespace zv
