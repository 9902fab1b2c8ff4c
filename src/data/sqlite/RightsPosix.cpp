#include "data/sqlite/Rights.h"

#include <sys/stat.h>
#include <unistd.h>

namespace zv::sqlite {

void takeRights(const std::filesystem::path& from, const std::filesystem::path& to)
{
    struct stat found {};
    if (stat(from.c_str(), &found) != 0)
        return;
    // The group alone, for whoever may not give files away.
    bool given = chown(to.c_str(), found.st_uid, found.st_gid) == 0;
    if (!given)
        given = chown(to.c_str(), static_cast<uid_t>(-1), found.st_gid) == 0;
    // Another group than the old one's gets no right by its number.
    const mode_t rights = found.st_mode & (given ? 0777 : 0707);
    std::error_code ignored;
    std::filesystem::permissions(to, static_cast<std::filesystem::perms>(rights), ignored);
}

} // namespace zv::sqlite
