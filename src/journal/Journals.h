#pragma once

#include "journal/Journal.h"

namespace zv::journal {

/// A journal that a program left behind.
struct Found {
    std::filesystem::path path;
    End end = End::whole;
    Draft draft = {};
};

/// The journals in a folder whose programs run no more, the newest first; those with nothing that was changed
/// are left out, and so is what is no journal. Fails as ownKey() does.
std::vector<Found> drafts(const std::filesystem::path& folder);
/// Those of the dialog that is being opened: the same school, person, dialog, row and section.
std::vector<Found> draftsFor(const Opening& opening, const std::filesystem::path& folder);
/// Those of the session's school and person.
std::vector<Found> draftsOfSession(const std::filesystem::path& folder);
/// Every journal's file, also those that cannot be read or are being written.
std::vector<std::filesystem::path> journalFiles(const std::filesystem::path& folder);
/// Deletes a journal for good.
void discard(const std::filesystem::path& journal);
/// Keeps of a journal what has no place any more, in place of the whole; with nothing left it is deleted. It
/// is on the disk when this returns; where it cannot be written the whole stays. Fails with a
/// std::system_error.
void keepOnly(const Found& found, const std::vector<Change>& left);

} // namespace zv::journal
