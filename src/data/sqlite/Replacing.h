#pragma once

#include <filesystem>

namespace zv::sqlite {

/// Puts the three files of a school in the place of another's, which get a third name (live databases'
/// paths), recoverably: a note of what is going on is on disk before the first file moves, and whoever opens
/// the school next finishes. Fails, and moves nothing, if any of the files is open elsewhere.
void replaceFiles(const std::filesystem::path& live, const std::filesystem::path& with,
                  const std::filesystem::path& kept);
/// Finishes what a killed process began; mostly there is nothing.
void finishReplacing(const std::filesystem::path& live);

} // namespace zv::sqlite
