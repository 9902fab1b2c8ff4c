#pragma once

#include <filesystem>

namespace zv::sqlite {

/// Folder beside a live database in which its files are made; its lock is that of whoever changes the three.
std::filesystem::path makingFolderOf(const std::filesystem::path& live);

/// Puts the three files of a school in the place of another's, which get a third name (live databases'
/// paths), recoverably: a note of what is going on is on disk before the first file moves. The new files get
/// the old ones' owner and rights. What cannot be read of the old ones, or lacks, stands in nobody's way.
/// The caller holds the lock. Fails, and moves nothing, if any of the files is open elsewhere.
void replaceFiles(const std::filesystem::path& live, const std::filesystem::path& made,
                  const std::filesystem::path& kept);
/// Whether the files of a school are about to move.
bool isBeingReplaced(const std::filesystem::path& live);
/// Waits for whoever replaces the files, and finishes what a killed process began; mostly there is nothing.
/// Fails where this user may not.
void finishReplacing(const std::filesystem::path& given);
/// The same for who holds the lock.
void finishLocked(const std::filesystem::path& given);

} // namespace zv::sqlite
