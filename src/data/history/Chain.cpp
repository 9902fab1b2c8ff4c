#include "data/history/Chain.h"

#include "crypto/Sodium.h"
#include "runtime/Convert.h"

#include <sodium.h>

#include <array>
#include <span>

namespace zv::history {
namespace {

String asText(std::span<const unsigned char> bytes)
{
    return fromUtf8(crypto::toBase64(bytes, crypto::Base64::Unpadded));
}

/// Incremental hash. Each text goes with its length in front, so that no two lists of texts are one.
class Hash {
public:
    Hash()
    {
        crypto::useSodium();
        crypto_generichash_init(&state_, nullptr, 0, crypto_generichash_BYTES);
    }
    Hash& operator<<(StringView text)
    {
        add(text.size());
        // Units one by one as 16 bits, the low byte first, on every machine.
        bytes_.clear();
        for (const char16_t unit : text) {
            bytes_.push_back(static_cast<unsigned char>(unit & 0xFF));
            bytes_.push_back(static_cast<unsigned char>(unit >> 8));
        }
        crypto_generichash_update(&state_, bytes_.data(), bytes_.size());
        return *this;
    }
    Hash& operator<<(Long number)
    {
        add(static_cast<std::uint32_t>(number));
        return *this;
    }
    String text()
    {
        std::array<unsigned char, crypto_generichash_BYTES> result{};
        crypto_generichash_final(&state_, result.data(), result.size());
        return asText(result);
    }

private:
    void add(std::uint64_t number)
    {
        std::array<unsigned char, 8> bytes{};
        for (unsigned char& each : bytes) {
            each = static_cast<unsigned char>(number & 0xFF);
            number >>= 8;
        }
        crypto_generichash_update(&state_, bytes.data(), bytes.size());
    }

    crypto_generichash_state state_{};
    std::vector<unsigned char> bytes_;
};

} // namespace

String freshSalt()
{
    crypto::useSodium();
    std::array<unsigned char, 16> bytes{};
    randombytes_buf(bytes.data(), bytes.size());
    return asText(bytes);
}

String digestOf(const Entry& entry) { return (Hash() << entry.salt << entry.before << entry.after).text(); }

String linkOf(StringView previous, const Entry& entry)
{
    return (Hash() << previous << entry.number << entry.moment << static_cast<Long>(entry.kind)
                   << entry.opening << entry.save << entry.table << entry.row << entry.digest)
        .text();
}

} // namespace zv::history
