#include "crypto/Sodium.h"

#include <sodium.h>

#include <stdexcept>

namespace zv::crypto {
namespace {

int variant(Base64 kind)
{
    return kind == Base64::Padded ? sodium_base64_VARIANT_ORIGINAL
                                  : sodium_base64_VARIANT_ORIGINAL_NO_PADDING;
}

} // namespace

void useSodium()
{
    static const bool ready = sodium_init() >= 0;
    if (!ready)
        throw std::runtime_error(
            "No se puede cifrar ni calcular huellas: la máquina no da números al azar. Reiníciela.");
}

const unsigned char* bytesOf(std::string_view text)
{
    return static_cast<const unsigned char*>(static_cast<const void*>(text.data()));
}

unsigned char* bytesOf(std::string& text)
{
    return static_cast<unsigned char*>(static_cast<void*>(text.data()));
}

std::string toBase64(std::span<const unsigned char> bytes, Base64 kind)
{
    std::string text(sodium_base64_encoded_len(bytes.size(), variant(kind)), '\0');
    sodium_bin2base64(text.data(), text.size(), bytes.data(), bytes.size(), variant(kind));
    text.pop_back(); // Terminating zero.
    return text;
}

std::optional<std::vector<unsigned char>> fromBase64(std::string_view text, Base64 kind)
{
    // One more byte, so that the buffer is never empty: the library wants a valid pointer.
    std::vector<unsigned char> bytes(text.size() + 1);
    std::size_t length = 0;
    if (sodium_base642bin(bytes.data(), bytes.size(), text.data(), text.size(), nullptr, &length, nullptr,
                          variant(kind)) != 0)
        return std::nullopt;
    bytes.resize(length);
    return bytes;
}

} // namespace zv::crypto
