#pragma once

#include "runtime/String.h"

#include <array>
#include <optional>

namespace zv {

/// A secret key, and what is done with it: XChaCha20-Poly1305, a fresh nonce for each text, base64. The text
/// inside is UTF-8.
class CipherKey {
public:
    static CipherKey random();
    /// From what text() gives; nothing for any other text.
    static std::optional<CipherKey> parse(std::string_view text);
    /// For the key file: one word of hexadecimal digits.
    std::string text() const;

    /// Fails with 5 where a surrogate stands alone: it would not come back.
    String seal(StringView plain) const;
    /// Nothing if the text was made with another key, or changed since.
    std::optional<String> open(StringView sealed) const;

private:
    static constexpr std::size_t size = 32;
    std::array<unsigned char, size> bytes_{};
};

} // namespace zv
