#pragma once

#include "runtime/String.h"

#include <filesystem>
#include <string_view>
#include <system_error>

/// Files and folders for their owner alone, as each system keeps others out.
namespace zv::owneronly {

/// Who may read a new file: its owner, from its first moment; or whoever a new file in that folder is for.
enum class Readers { owner, ofFolder };
/// Makes a file with that content; it is on disk when this returns. What has the name, a link too, is a
/// failure.
std::error_code write(const std::filesystem::path& file, std::string_view text,
                      Readers readers = Readers::owner);
/// Gives a finished file its name, on disk; std::errc::file_exists if the name is taken. The first name goes.
std::error_code place(const std::filesystem::path& draft, const std::filesystem::path& file);
/// Gives a finished file its name, on disk, in place of what has it; of a link, not of what it leads to.
std::error_code replace(const std::filesystem::path& draft, const std::filesystem::path& file);
/// Brings what was written to a file onto the disk.
std::error_code flush(const std::filesystem::path& file);
/// Makes a folder closed to others; one that is there stays as it is.
void makeFolder(const std::filesystem::path& folder);
/// Whether anyone but the owner, and those who run the machine, may read or change the file.
bool openToOthers(const std::filesystem::path& file);
/// The system's command that takes their right away.
StringView closingCommand();

} // namespace zv::owneronly
