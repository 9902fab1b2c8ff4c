#include "suite/sodium/CipherKey.h"

#include "crypto/Sodium.h"
#include "runtime/Errors.h"

#include <sodium.h>

#include <vector>

namespace zv {

namespace {

constexpr std::size_t nonceSize = crypto_aead_xchacha20poly1305_ietf_NPUBBYTES;
constexpr std::size_t tagSize = crypto_aead_xchacha20poly1305_ietf_ABYTES;

using Bytes = std::vector<unsigned char>;

} // namespace

CipherKey CipherKey::random()
{
    static_assert(size == crypto_aead_xchacha20poly1305_ietf_KEYBYTES);
    crypto::useSodium();
    CipherKey key;
    crypto_aead_xchacha20poly1305_ietf_keygen(key.bytes_.data());
    return key;
}

std::optional<CipherKey> CipherKey::parse(std::string_view text)
{
    crypto::useSodium();
    CipherKey key;
    std::size_t length = 0;
    if (text.size() != 2 * size ||
        sodium_hex2bin(key.bytes_.data(), size, text.data(), text.size(), nullptr, &length, nullptr) != 0)
        return std::nullopt;
    return key;
}

std::string CipherKey::text() const
{
    std::string text(2 * size + 1, '\0');
    sodium_bin2hex(text.data(), text.size(), bytes_.data(), size);
    text.pop_back();
    return text;
}

String CipherKey::seal(StringView plain) const
{
    if (!isWellFormed(plain))
        fail(failure::invalidCall, u"el texto lleva medio carácter, que no se puede cifrar");
    crypto::useSodium();
    const std::string text = toUtf8(plain);
    Bytes sealed(nonceSize + text.size() + tagSize);
    randombytes_buf(sealed.data(), nonceSize);
    const Bytes bytes(text.begin(), text.end());
    crypto_aead_xchacha20poly1305_ietf_encrypt(sealed.data() + nonceSize, nullptr, bytes.data(), bytes.size(),
                                               nullptr, 0, nullptr, sealed.data(), bytes_.data());
    return fromUtf8(crypto::toBase64(sealed, crypto::Base64::Padded));
}

std::optional<String> CipherKey::open(StringView sealed) const
{
    crypto::useSodium();
    const std::optional<Bytes> bytes = crypto::fromBase64(toUtf8(sealed), crypto::Base64::Padded);
    if (!bytes || bytes->size() < nonceSize + tagSize)
        return std::nullopt;
    Bytes plain(bytes->size() - nonceSize - tagSize);
    if (crypto_aead_xchacha20poly1305_ietf_decrypt(plain.data(), nullptr, nullptr, bytes->data() + nonceSize,
                                                   bytes->size() - nonceSize, nullptr, 0, bytes->data(),
                                                   bytes_.data()) != 0)
        return std::nullopt;
    return fromUtf8(std::string(plain.begin(), plain.end()));
}

} // namespace zv
