#pragma once

#include "care/Contents.h"
#include "care/CopyFile.h"

namespace zv::care {

/// What a backup was made of, and what it holds.
struct CopyReport {
    String moment; ///< UTC.
    Long tables = 0;
    Long rows = 0;
    Long head = 0; ///< Number of the newest entry of the history, 0 without one; its link.
    String link;
    bool hasKey = false; ///< It holds the key of the illnesses.
};

/// Copies a school as it is at one instant into one file, while stations write, and reads it back: "checked"
/// means that what a restore gives is equal by content. `key` is the key file's text, kept under the
/// passphrase; without both the copy lacks it. Fails with a RuntimeError or a std::system_error, and then
/// there is no file.
CopyReport takeCopy(StringView url, const std::filesystem::path& file, const std::string& key,
                    const std::string& passphrase);

/// Checks a copy, and tells what it holds.
CopyReport checkCopy(const std::filesystem::path& file);

/// Puts the school of a copy at a place: where there is one already, that is kept under another name, which
/// is returned
/// ("" if there was none). All or nothing, and nothing is changed before the copy has proved itself.
String restoreCopy(const std::filesystem::path& file, StringView url);

/// The key that the copy keeps; "" if it keeps none, nullopt for another passphrase.
std::optional<std::string> keyIn(const std::filesystem::path& file, const std::string& passphrase);

/// Which of the copies of a folder, by their dates (YYYY-MM-DD), a daily round keeps: the newest of each of
/// the last 7 days, 4 weeks and 12 months.
std::vector<std::string> keptOf(std::vector<std::string> dates);

} // namespace zv::care
