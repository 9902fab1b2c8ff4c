#pragma once

#include <array>
#include <filesystem>

namespace zv::journal {

/// The person's secret key, made at its first use, in a file of his state folder that nobody else can read.
using SecretKey = std::array<unsigned char, 32>;

/// "ZVConfiguracion/diario" in XDG_STATE_HOME, %LOCALAPPDATA% or .local/state at home; empty where the system
/// says nothing of the person.
std::filesystem::path folder();
/// The key in that folder; made if there is none, atomically, as two programs may start at once. Fails with
/// a std::runtime_error, in Spanish, if the file cannot be read or written, is open to others, or is no key.
SecretKey ownKey(const std::filesystem::path& folder);

} // namespace zv::journal
