#include "data/sqlite/FilesToBe.h"

#include "data/sqlite/File.h"

#ifndef _WIN32
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

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

FilesToBe::Folder::Folder(const fs::path& live) : path_(fs::path(live) += ".creando")
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

#ifdef _WIN32
bool FilesToBe::Folder::lock() { return true; }
FilesToBe::Folder::~Folder()
{
    std::error_code ignored;
    fs::remove(path_, ignored);
}
#else
/// Race: False if whoever held the lock removed the folder meanwhile.
bool FilesToBe::Folder::lock()
{
    const int handle = open(path_.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (handle < 0 && errno == ENOENT)
        return false;
    if (handle < 0 && (errno == ELOOP || errno == ENOTDIR))
        failFor(path_, inTheWay);
    if (handle < 0)
        failFor(path_, noRight);
    struct stat locked {};
    struct stat there {};
    const bool free = flock(handle, LOCK_EX | LOCK_NB) == 0;
    if (free && fstat(handle, &locked) == 0 && stat(path_.c_str(), &there) == 0 &&
        locked.st_dev == there.st_dev && locked.st_ino == there.st_ino) {
        handle_ = handle;
        return true;
    }
    close(handle);
    if (!free)
        failFor(path_, u"es de otro programa, que está creando ahí el mismo colegio: espere a que termine.");
    return false;
}

FilesToBe::Folder::~Folder()
{
    std::error_code ignored;
    fs::remove(path_, ignored);
    close(handle_);
}
#endif

FilesToBe::FilesToBe(fs::path live) : live_(std::move(live)), folder_(live_)
{
    std::error_code ignored;
    // With a live database there they are a school, whatever stands in the folder still.
    if (!fs::exists(live_, ignored))
        takeBack();
    clear();
    for (const Database which : {Database::centro, Database::borrado, Database::entrada})
        checkPlace(place(which), true);
}

FilesToBe::~FilesToBe()
{
    if (!placed_)
        takeBack();
    clear();
}

/// Only what this program put there: a folder of that name may hold more.
void FilesToBe::clear() const
{
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
}

} // namespace zv::sqlite
