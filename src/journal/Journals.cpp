#include "journal/Journals.h"

#include "journal/Recorder.h"

#include <algorithm>

namespace zv::journal {

namespace fs = std::filesystem;

std::vector<fs::path> journalFiles(const fs::path& folder)
{
    std::vector<fs::path> found;
    std::error_code ignored;
    for (const fs::directory_entry& each : fs::directory_iterator(folder, ignored))
        if (each.path().extension().u16string() == extension)
            found.push_back(each.path());
    std::ranges::sort(found);
    return found;
}

std::vector<Found> drafts(const fs::path& folder)
{
    std::vector<Found> found;
    const std::vector<fs::path> files = journalFiles(folder);
    if (files.empty())
        return found;
    const SecretKey key = ownKey(folder);
    for (const fs::path& file : files) {
        if (inUse(file))
            continue;
        Reading reading = readFile(file, key);
        if (reading.end != End::foreign && !reading.draft.empty())
            found.push_back({file, reading.end, std::move(reading.draft)});
    }
    std::ranges::stable_sort(found, std::ranges::greater(),
                             [](const Found& each) { return each.draft.moment; });
    return found;
}

std::vector<Found> draftsFor(const Opening& opening, const fs::path& folder)
{
    std::vector<Found> found = drafts(folder);
    std::erase_if(found, [&](const Found& each) { return !each.draft.opening.sameAs(opening); });
    return found;
}

std::vector<Found> draftsOfSession(const fs::path& folder)
{
    const Opening session = sessionOpening();
    std::vector<Found> found = drafts(folder);
    std::erase_if(found, [&](const Found& each) {
        return each.draft.opening.school != session.school || each.draft.opening.person != session.person;
    });
    return found;
}

void discard(const fs::path& journal)
{
    std::error_code ignored;
    fs::remove(journal, ignored);
}

void keepOnly(const Found& found, const std::vector<Change>& left)
{
    if (!left.empty()) {
        const fs::path folder = found.path.parent_path();
        Writer kept(folder, ownKey(folder), found.draft.opening);
        std::error_code error;
        Act all{.verb = ActVerb::focus, .moment = found.draft.moment};
        for (const Change& change : left) {
            all.changes.push_back({all.changes.size(), change.before, change.after});
            if (!error)
                error = kept.write(found.draft.places[change.place]);
        }
        if (!error)
            error = kept.write(all);
        if (!error)
            error = kept.sync();
        if (error) {
            kept.remove();
            throw std::system_error(error);
        }
    }
    discard(found.path);
}

} // namespace zv::journal
