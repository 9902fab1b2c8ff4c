#include "journal/Journals.h"

#include "journal/Recorder.h"

#include <algorithm>
#include <chrono>
#include <iterator>

namespace zv::journal {

namespace fs = std::filesystem;

namespace {

/// How old a journal is before one that holds nothing is deleted.
constexpr std::chrono::hours idle{12};

fs::file_time_type::duration ageOf(const fs::path& file)
{
    std::error_code error;
    const fs::file_time_type written = fs::last_write_time(file, error);
    return error ? fs::file_time_type::duration::zero() : fs::file_time_type::clock::now() - written;
}

bool isEmpty(const fs::path& file)
{
    std::error_code ignored;
    return fs::file_size(file, ignored) == 0;
}

std::vector<fs::path> allFiles(const fs::path& folder)
{
    std::vector<fs::path> found;
    std::error_code ignored;
    for (const fs::directory_entry& each : fs::directory_iterator(folder, ignored))
        if (each.path().extension().u16string() == extension)
            found.push_back(each.path());
    std::ranges::sort(found);
    return found;
}

} // namespace

std::vector<fs::path> journalFiles(const fs::path& folder)
{
    std::vector<fs::path> found = allFiles(folder);
    std::erase_if(found, isEmpty);
    return found;
}

std::vector<Found> drafts(const fs::path& folder)
{
    std::vector<Found> found;
    const std::vector<fs::path> files = allFiles(folder);
    if (files.empty())
        return found;
    const SecretKey key = ownKey(folder);
    for (const fs::path& file : files) {
        if (inUse(file))
            continue;
        Reading reading = readFile(file, key);
        const bool readable = reading.end == End::whole || reading.end == End::torn || isEmpty(file);
        if (reading.draft.empty() || onlyChooses(reading.draft.opening.dialog)) {
            if (readable && ageOf(file) > idle)
                discard(file);
        } else {
            found.push_back({file, reading.end, std::move(reading.draft)});
        }
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
    std::erase_if(found, [&](const Found& each) { return !each.draft.opening.sameSession(session); });
    return found;
}

std::vector<Found> draftsElsewhere(const fs::path& folder)
{
    const Opening session = sessionOpening();
    std::vector<Found> found = drafts(folder);
    std::erase_if(found, [&](const Found& each) { return !each.draft.opening.elsewhere(session); });
    return found;
}

void bringHere(const Found& found)
{
    const auto spool = std::make_shared<Spool>(found.path.parent_path());
    const SecretKey key = ownKey(spool->folder());
    Opening opening = found.draft.opening;
    opening.school = sessionOpening().school;
    Writer here(spool, key, opening);
    std::error_code error;
    readFile(found.path, key, [&](const Record& record) {
        if (!error && !std::holds_alternative<Opening>(record))
            error = here.write(record);
    });
    if (!error)
        error = here.sync();
    if (error) {
        here.remove();
        throw std::system_error(error);
    }
    discard(found.path);
}

std::size_t forgotten(const fs::path& folder, int days)
{
    std::vector<Found> ours = draftsOfSession(folder);
    std::ranges::move(draftsElsewhere(folder), std::back_inserter(ours));
    const std::vector<fs::path> all = journalFiles(folder);
    return static_cast<std::size_t>(std::ranges::count_if(all, [&](const fs::path& file) {
        return ageOf(file) >= std::chrono::days(days) && !inUse(file) &&
               std::ranges::find(ours, file, &Found::path) == ours.end();
    }));
}

bool discard(const fs::path& journal)
{
    std::error_code error;
    fs::remove(journal, error);
    return !error;
}

void keepOnly(Found& found, const std::vector<Item>& left)
{
    Found kept;
    if (!left.empty()) {
        const auto spool = std::make_shared<Spool>(found.path.parent_path());
        const SecretKey key = ownKey(spool->folder());
        Writer writer(spool, key, found.draft.opening);
        std::error_code error;
        Act all{.verb = ActVerb::focus, .moment = found.draft.moment};
        for (const Item& item : left) {
            all.changes.push_back({all.changes.size(), item.change.before, item.change.after});
            Place place = found.draft.places[item.change.place];
            // The row of the dialog's own list, which the steps told that are not kept.
            if (!item.within.empty() && !place.label.starts_with(item.within))
                place.label = item.within + u", " + place.label;
            if (!error)
                error = writer.write(place);
        }
        if (!error)
            error = writer.write(all);
        if (!error)
            error = writer.sync();
        if (error) {
            writer.remove();
            throw std::system_error(error);
        }
        kept.path = writer.path();
        kept.draft = readFile(kept.path, key).draft;
    }
    discard(found.path);
    found = std::move(kept);
}

} // namespace zv::journal
