#pragma once

#include "data/Connection.h"
#include "runtime/Errors.h"
#include "suite/sodium/CipherKey.h"

#include <filesystem>

namespace zv {

/// Error number of the cipher: for a bad key file, or a text that the key does not open.
inline constexpr std::int32_t cipherFailed = -2147220991;
/// Throws a RuntimeError of that number; the text is Spanish and says what to do.
[[noreturn]] void failCipher(StringView text);

/// Path of the key file: ZV_CLAVE, or "ZVConfiguracion/clave" in the user's configuration folder. Fails if
/// neither is known.
std::filesystem::path keyPlace();
/// Fails if the file is missing, unreadable, malformed, or accessible to others.
CipherKey readKey(const std::filesystem::path& file);
/// The key file's whole text, as createKey() wrote it; "" where there is none that can be read.
std::string keyFileText();
/// Whether a school has enciphered texts. Fails as readKey() if it has, and if the key in its place opens
/// none.
bool checkKey(const School& school);
/// Creates a key file, readable only by its owner. False if a file exists already.
bool createKey(const std::filesystem::path& file, const CipherKey& key);

} // namespace zv
