#pragma once

#include <filesystem>

namespace zv::sqlite {

/// Gives a file the owner and the rights of another, as far as this user may and the disk knows of them.
void takeRights(const std::filesystem::path& from, const std::filesystem::path& to);

} // namespace zv::sqlite
