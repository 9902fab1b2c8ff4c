#pragma once

#include "runtime/String.h"

#include <array>
#include <optional>

namespace zv {

/// Secret key for authenticated encryption: XChaCha20-Poly1305 of the text in UTF-8, with a random nonce for
/// each text, all in Base64.
class CipherKey {
public:
    static CipherKey random();
    /// Inverse of text(); nullopt for any other text.
    static std::optional<CipherKey> parse(std::string_view text);
    /// Serialised for the key file: hexadecimal digits.
    std::string text() const;

    /// Encrypts. Fails with 5 on a lone surrogate, which UTF-8 would not preserve.
    String seal(StringView plain) const;
    /// Decrypts; nullopt if authentication fails: another key, or a modified text.
    std::optional<String> open(StringView sealed) const;

private:
    static constexpr std::size_t size = 32;
    std::array<unsigned char, size> bytes_{};
};

} // namespace zv
