#pragma once

#include "runtime/String.h"

#include <filesystem>
#include <vector>

namespace zv::zvconf {

/// A line of a list of schools.
struct ListedSchool {
    String name; ///< Fit for the name of a file on any disk.
    String url;
};

/// Reads a list: UTF-8, a school a line, its name and behind a blank its URL; lines that begin with # and
/// empty ones count for nothing. Fails with a std::runtime_error that names the file and each wrong line, in
/// Spanish: also for two schools of one name or at one place, and for passwords in a file that others may
/// read.
std::vector<ListedSchool> schoolsIn(const std::filesystem::path& list);

} // namespace zv::zvconf
