#pragma once

#include "runtime/Errors.h"
#include "suite/sodium/CipherKey.h"

#include <filesystem>

namespace zv {

/// Number of all failures of the cipher: of its key file, or of a text that its key does not open.
inline constexpr std::int32_t cipherFailed = -2147220991;
/// Fails so; the text is Spanish and says what to do.
[[noreturn]] void failCipher(StringView text);

/// Where the key is: ZV_CLAVE, or "ZVConfiguracion/clave" in the person's configuration folder. Fails where
/// neither is known.
std::filesystem::path keyPlace();
/// Fails if the file is missing, cannot be read, holds no key or is open to others.
CipherKey readKey(const std::filesystem::path& file);
/// Makes a key file, to be read by its owner alone. False if there is a file already.
bool createKey(const std::filesystem::path& file, const CipherKey& key);

} // namespace zv
