#pragma once

#include <filesystem>
#include <string_view>

namespace zv {

/// Creates a file that only its owner can read, and missing folders, atomically and durably: no reader ever
/// sees it incomplete, and it is synced to disk when this returns. False if it exists already. Fails with a
/// std::system_error.
bool createPrivateFile(const std::filesystem::path& file, std::string_view text);
/// Writes a file that anyone may read who may read new ones in its folder, in place of what has its name,
/// atomically and durably: readers see the one or the other, and a link is replaced, not followed. Fails with
/// a std::system_error, and then all is as it was.
void replaceFile(const std::filesystem::path& file, std::string_view text);
/// Fails as replaceFile() would, as far as can be told before.
void tryReplacing(const std::filesystem::path& file);
/// Makes a folder that only its owner can enter, and missing ones above it; one that is there stays as it is.
/// Fails with a std::system_error.
void makePrivateFolder(const std::filesystem::path& folder);

} // namespace zv
