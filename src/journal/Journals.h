#pragma once

#include "journal/Item.h"
#include "journal/Journal.h"

namespace zv::journal {

/// A journal that a program left behind.
struct Found {
    std::filesystem::path path;
    End end = End::whole;
    Draft draft = {};
};

/// The journals in a folder whose programs run no more, the newest first; those with nothing that was changed
/// are left out, and deleted when they are some hours old, and so is what is no journal left out. Fails as
/// ownKey() does.
std::vector<Found> drafts(const std::filesystem::path& folder);
/// Those of the dialog that is being opened: the same school, person, dialog, row and section.
std::vector<Found> draftsFor(const Opening& opening, const std::filesystem::path& folder);
/// Those of the session's school and person.
std::vector<Found> draftsOfSession(const std::filesystem::path& folder);
/// Those of the session's person and of a school of the same number and name in another place, which may be
/// the session's before it moved.
std::vector<Found> draftsElsewhere(const std::filesystem::path& folder);
/// Makes a draft the session's school's, where a person says that it is. It is on the disk when this returns.
/// Fails with a std::system_error; the journal stays as it was then.
void bringHere(const Found& found);
/// How many journals are older than so many days, and neither of the above: another school's or person's, or
/// such that cannot be read. Those of programs that run are left out.
std::size_t forgotten(const std::filesystem::path& folder, int days);
/// Every journal's file, also those that cannot be read or are being written; but for empty ones, which
/// programs keep for the next.
std::vector<std::filesystem::path> journalFiles(const std::filesystem::path& folder);
/// Deletes a journal for good; false if it is still there.
bool discard(const std::filesystem::path& journal);
/// Keeps of a journal what has no place any more, in place of the whole, in a file of its own; with nothing
/// left it is deleted, and has no path. It is on the disk when this returns; where it cannot be written the
/// whole stays. Fails with a std::system_error.
void keepOnly(Found& found, const std::vector<Item>& left);

} // namespace zv::journal
