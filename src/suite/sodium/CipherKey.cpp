#include "suite/sodium/CipherKey.h"

#include "runtime/Errors.h"

#include <sodium.h>

#include <stdexcept>
#include <vector>

namespace zv {

namespace {

constexpr std::size_t nonceSize = crypto_aead_xchacha20poly1305_ietf_NPUBBYTES;
constexpr std::size_t tagSize = crypto_aead_xchacha20poly1305_ietf_ABYTES;
constexpr int base64 = sodium_base64_VARIANT_ORIGINAL;

using Bytes = std::vector<unsigned char>;

/// Initialises the library, once; required before any other call.
void begin()
{
    static const bool ready = sodium_init() >= 0;
    if (!ready)
        throw std::runtime_error("El cifrado no puede empezar: la máquina no da números al azar.");
}

std::string toBase64(const Bytes& bytes)
{
    std::string text(sodium_base64_encoded_len(bytes.size(), base64), '\0');
    sodium_bin2base64(text.data(), text.size(), bytes.data(), bytes.size(), base64);
    text.pop_back(); // Terminating zero.
    return text;
}

std::optional<Bytes> fromBase64(std::string_view text)
{
    // One more byte, so that the buffer is never empty: the library wants a valid pointer.
    Bytes bytes(text.size() + 1);
    std::size_t length = 0;
    if (sodium_base642bin(bytes.data(), bytes.size(), text.data(), text.size(), nullptr, &length, nullptr,
                          base64) != 0)
        return std::nullopt;
    bytes.resize(length);
    return bytes;
}

} // namespace

CipherKey CipherKey::random()
{
    static_assert(size == crypto_aead_xchacha20poly1305_ietf_KEYBYTES);
    begin();
    CipherKey key;
    crypto_aead_xchacha20poly1305_ietf_keygen(key.bytes_.data());
    return key;
}

std::optional<CipherKey> CipherKey::parse(std::string_view text)
{
    begin();
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
    begin();
    const std::string text = toUtf8(plain);
    Bytes sealed(nonceSize + text.size() + tagSize);
    randombytes_buf(sealed.data(), nonceSize);
    const Bytes bytes(text.begin(), text.end());
    crypto_aead_xchacha20poly1305_ietf_encrypt(sealed.data() + nonceSize, nullptr, bytes.data(), bytes.size(),
                                               nullptr, 0, nullptr, sealed.data(), bytes_.data());
    return fromUtf8(toBase64(sealed));
}

std::optional<String> CipherKey::open(StringView sealed) const
{
    begin();
    const std::optional<Bytes> bytes = fromBase64(toUtf8(sealed));
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
