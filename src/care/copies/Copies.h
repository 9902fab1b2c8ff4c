#pragma once

#include "care/copies/Contents.h"
#include "care/copies/CopyFile.h"

namespace zv::care {

/// What a backup was made of, and what it holds.
struct CopyReport {
    String moment; ///< UTC, as momentText() writes it.
    Long tables = 0;
    Long rows = 0;
    Long head = 0; ///< Number of the newest entry of the history, 0 without one; its link.
    String link;
    bool hasKey = false; ///< It holds the key of the illnesses.
    /// What is wrong with the copied databases, one line in Spanish for each: damage, tables and columns that
    /// are missing. With damage nothing is counted: only the bytes are known to be those copied.
    std::vector<String> faults;
    std::vector<String> leftOut; ///< Triggers and views, which a restore leaves out, likewise.
};

/// Copies a school as it is at one instant into one file, while stations write, and reads it back: "checked"
/// means that what a restore gives is equal by content. Faulty databases are copied too. `key` is the key
/// file's text, kept under the passphrase; without both the copy lacks it. Fails with a RuntimeError or a
/// std::system_error, and then there is no file.
CopyReport takeCopy(StringView url, const std::filesystem::path& file, const std::string& key,
                    const std::string& passphrase);

/// Checks a copy, and tells what a restore would give. Fails with a BadCopy for one that is spoilt.
CopyReport checkCopy(const std::filesystem::path& file);

/// Puts the school of a copy at a place: where there is one already, that is kept under another name, which
/// is returned ("" if there was none). All or nothing, and nothing is changed before the copy has proved
/// itself.
String restoreCopy(const std::filesystem::path& file, StringView url);

/// Whether a copy says that it is of the school at that place, on one of its listed servers. Fails as
/// manifestOf().
bool isOf(const std::filesystem::path& file, StringView url);

/// The key that the copy keeps; "" if it keeps none, nullopt for another passphrase.
std::optional<std::string> keyIn(const std::filesystem::path& file, const std::string& passphrase);

/// Which of the copies of a folder, by their dates (YYYY-MM-DD), a daily round keeps: the newest of each of
/// the last 7 days, 4 weeks and 12 months.
std::vector<std::string> keptOf(std::vector<std::string> dates);

} // namespace zv::care
