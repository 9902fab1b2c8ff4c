#pragma once

#include "runtime/String.h"

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

/// What the system knows of the person and of its own failures.
namespace zv {

/// A variable of the environment, in UTF-8 where the system has its texts in units of 16 bits, and else as it
/// stands; nothing if it is not set.
std::optional<std::string> environment(const char* name);
/// A variable that holds the path of a file or folder; the empty path if it is not set.
std::filesystem::path pathInEnvironment(const char* name);
/// The decimal mark that the person chose in the settings of the system; nothing where it keeps none beside
/// the environment.
std::optional<char16_t> chosenDecimalMark();
/// The system's own words for one of its failures.
String wordsFor(const std::error_code& error);

} // namespace zv
