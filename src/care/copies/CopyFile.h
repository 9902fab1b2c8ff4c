#pragma once

#include "runtime/Errors.h"

#include <array>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace zv::care {

/// Container of a backup: a line of magic, the manifest ("name: value" lines in UTF-8, an empty one at its
/// end), its digest, then the files one after another. The manifest has each file's size and digest (BLAKE2b
/// of 256 bits), so that any byte changed, added or missing is found. Whoever makes a whole new container is
/// not.
using Manifest = std::map<std::string, std::string>;

/// A file that is no copy of ours, or not as it was written; the text says what to do.
class BadCopy : public RuntimeError {
public:
    explicit BadCopy(String description);
};

/// Parts of the container, in their order.
inline constexpr std::array<const char*, 3> partNames{"centro", "borrado", "entrada"};

/// Writes a container of the three files, which `partOf` gives, readable by its owner only and on disk when
/// this returns. The manifest's entries of sizes and digests are added. Fails with a std::system_error, and
/// then leaves nothing behind.
void pack(const std::filesystem::path& file, Manifest manifest,
          const std::function<std::filesystem::path(std::size_t part)>& partOf);

/// Reads the manifest, checked by its digest, and looks that the file has the size it says. Fails with a
/// BadCopy, or with a RuntimeError where the file cannot be read or a newer version made it.
Manifest manifestOf(const std::filesystem::path& file);
/// Extracts the parts to where `partOf` says, checks all and returns the manifest. Fails as manifestOf();
/// then what was written is not to be used.
Manifest unpack(const std::filesystem::path& file,
                const std::function<std::filesystem::path(std::size_t part)>& partOf);

/// Digest of a text (BLAKE2b of 256 bits), as base64.
std::string digestOf(std::string_view text);

/// Secret text under a passphrase (Argon2id, XChaCha20-Poly1305), as base64; and back, nullopt for another
/// passphrase.
std::string wrapped(std::string_view secret, std::string_view passphrase);
std::optional<std::string> unwrapped(std::string_view wrapped, std::string_view passphrase);
/// Whether a text can be what wrapped() gave.
bool isWrapped(std::string_view text);

} // namespace zv::care
