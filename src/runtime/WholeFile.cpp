#include "runtime/WholeFile.h"

#include <fstream>
#include <sstream>

namespace zv {

std::optional<std::string> wholeFile(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    stream.peek(); // Opening a folder succeeds; reading it fails.
    if (!stream.is_open() || stream.bad())
        return std::nullopt;
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    if (bytes.bad())
        return std::nullopt;
    return std::move(bytes).str();
}

} // namespace zv
