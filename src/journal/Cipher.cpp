#include "journal/Cipher.h"

#include "crypto/Sodium.h"

#include <sodium.h>

namespace zv::journal {
namespace {

using crypto::bytesOf;

static_assert(Cipher::headerSize == crypto_secretstream_xchacha20poly1305_HEADERBYTES);
static_assert(Cipher::overhead == crypto_secretstream_xchacha20poly1305_ABYTES);
static_assert(std::tuple_size_v<SecretKey> == crypto_secretstream_xchacha20poly1305_KEYBYTES);

} // namespace

struct Cipher::State {
    crypto_secretstream_xchacha20poly1305_state stream{};
    ~State() { sodium_memzero(&stream, sizeof stream); }
};

Cipher::Cipher(const SecretKey& key) : state_(std::make_unique<State>())
{
    crypto_secretstream_xchacha20poly1305_init_push(&state_->stream, header_.data(), key.data());
}

Cipher::Cipher(const SecretKey& key, const Header& header)
    : state_(std::make_unique<State>()), header_(header)
{
    crypto_secretstream_xchacha20poly1305_init_pull(&state_->stream, header_.data(), key.data());
}

Cipher::Cipher(Cipher&&) noexcept = default;
Cipher& Cipher::operator=(Cipher&&) noexcept = default;
Cipher::~Cipher() = default;

void Cipher::seal(std::string_view plain, std::string& sealed)
{
    sealed.resize(plain.size() + overhead);
    crypto_secretstream_xchacha20poly1305_push(&state_->stream, bytesOf(sealed), nullptr, bytesOf(plain),
                                               plain.size(), nullptr, 0,
                                               crypto_secretstream_xchacha20poly1305_TAG_MESSAGE);
}

std::optional<std::string> Cipher::open(std::string_view sealed)
{
    if (sealed.size() < overhead)
        return std::nullopt;
    std::string plain(sealed.size() - overhead, '\0');
    if (crypto_secretstream_xchacha20poly1305_pull(&state_->stream, bytesOf(plain), nullptr, nullptr,
                                                   bytesOf(sealed), sealed.size(), nullptr, 0) != 0)
        return std::nullopt;
    return plain;
}

} // namespace zv::journal
