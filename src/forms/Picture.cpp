#include "forms/Picture.h"

#include "runtime/Errors.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>

namespace zv {

namespace {

/// Magic numbers: icon, bitmap, PNG, JPEG, GIF.
constexpr std::array<std::string_view, 5> starts{std::string_view("\0\0\1\0", 4), "BM", "\x89PNG\r\n\x1a\n",
                                                 "\xff\xd8\xff", "GIF8"};

} // namespace

Picture LoadPicture(StringView file)
{
    if (file.empty())
        return {};
    std::ifstream stream(std::filesystem::path(file.begin(), file.end()), std::ios::binary);
    std::string start(8, '\0');
    if (!stream)
        fail(failure::fileMissing, file);
    stream.read(start.data(), static_cast<std::streamsize>(start.size()));
    start.resize(static_cast<std::size_t>(std::max<std::streamsize>(stream.gcount(), 0)));
    if (std::none_of(starts.begin(), starts.end(),
                     [&](std::string_view known) { return start.starts_with(known); }))
        fail(failure::noPicture, file);
    return {String(file)};
}

} // namespace zv
