#include "data/sqlite/FilesToBe.h"

#include "data/sqlite/File.h"
#include "data/sqlite/Replacing.h"

namespace zv::sqlite {
namespace {

namespace fs = std::filesystem;

// The live database last, as the commit: without it the others are no school.
constexpr Database order[] = {Database::entrada, Database::borrado, Database::centro};

constexpr StringView inTheWay =
    u"está donde se ponen los ficheros mientras se crean, y no es de este programa: "
    u"llévelo a otro sitio y repita la orden.";

bool sameFile(const fs::path& one, const fs::path& other)
{
    std::error_code ignored;
    return fs::equivalent(one, other, ignored);
}

} // namespace

FilesToBe::Folder::Folder(const fs::path& live) : path_(makingFolderOf(live))
{
    if (live.empty())
        checkPlace(live, true);
    std::error_code error;
    while (fs::create_directory(path_, error) || !error) {
        if (lock())
            return;
        error.clear();
    }
    checkPlace(live, true);
    if (error == std::errc::no_space_on_device)
        failFor(live, diskFull);
    if (fs::exists(fs::symlink_status(path_, error)))
        failFor(path_, inTheWay);
    failFor(live, noRight);
}

/// Race: False if whoever held the lock removed the folder meanwhile.
bool FilesToBe::Folder::lock()
{
    switch (lock_.take(path_)) {
    case FolderLock::Result::taken:
        return true;
    case FolderLock::Result::gone:
        return false;
    case FolderLock::Result::noFolder:
        failFor(path_, inTheWay);
    case FolderLock::Result::busy:
        failFor(path_, u"es de otro programa, que está creando ahí el mismo colegio: espere a que termine.",
                failure::locked);
    case FolderLock::Result::denied:
        break;
    }
    failFor(path_, noRight);
}

FilesToBe::Folder::~Folder() { lock_.remove(path_); }

FilesToBe::FilesToBe(fs::path live, fs::path kept)
    : live_(std::move(live)), kept_(std::move(kept)), folder_(live_)
{
    if (resolved(live_) == live_)
        finishLocked(live_);
    std::error_code ignored;
    // With a live database there they are a school, whatever stands in the folder still.
    if (!fs::exists(live_, ignored))
        takeBack();
    clear();
    for (const Database which : everyDatabase)
        if (kept_.empty())
            checkPlace(place(which), true);
}

FilesToBe::~FilesToBe()
{
    if (!placed_)
        takeBack();
    clear();
}

/// Only what this program put there: a folder of that name may hold more. Files on their way into place are
/// still needed.
void FilesToBe::clear() const
{
    if (isBeingReplaced(live_))
        return;
    for (const Database which : order)
        removeFile(aside(which));
}

fs::path FilesToBe::aside(Database which) const { return fileOf(folder_.path() / live_.filename(), which); }

String FilesToBe::location() const { return aside(Database::centro).u16string(); }

/// Rollback: removes what is in place and not yet a school.
void FilesToBe::takeBack() const
{
    std::error_code ignored;
    for (const Database which : order)
        if (sameFile(aside(which), place(which)))
            fs::remove(place(which), ignored);
}

void FilesToBe::putInPlace()
{
    for (const Database which : order)
        if (fs::exists(fs::path(aside(which)) += "-wal"))
            failFor(live_, diskFull);
    if (!kept_.empty()) {
        replaceFiles(live_, aside(Database::centro), kept_);
        placed_ = true;
        return;
    }
    for (const Database which : order) {
        std::error_code error;
        fs::create_hard_link(aside(which), place(which), error);
        if (error)
            checkPlace(place(which), true);
        // Fallback: some file systems have no hard links.
        if (error)
            fs::rename(aside(which), place(which));
    }
    placed_ = true;
    // Now, and not at the end: where a file is open under one name, some systems remove no other of its
    // names.
    clear();
}

} // namespace zv::sqlite
