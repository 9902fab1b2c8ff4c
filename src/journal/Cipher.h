#pragma once

#include "journal/Key.h"

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace zv::journal {

/// Authenticated encryption of one record after another (secretstream XChaCha20-Poly1305): each opens only
/// behind all those before it, so that none can be changed, left out or put elsewhere.
class Cipher {
public:
    static constexpr std::size_t headerSize = 24;
    static constexpr std::size_t overhead = 17; ///< Bytes by which a sealed record is longer.
    using Header = std::array<unsigned char, headerSize>;

    /// To write: a new stream with its own random header.
    explicit Cipher(const SecretKey& key);
    /// To read a stream that begins with that header.
    Cipher(const SecretKey& key, const Header& header);
    Cipher(Cipher&&) noexcept;
    Cipher& operator=(Cipher&&) noexcept;
    ~Cipher();

    const Header& header() const { return header_; }
    void seal(std::string_view plain, std::string& sealed);
    /// nullopt if authentication fails: another key, or a changed record.
    std::optional<std::string> open(std::string_view sealed);

private:
    struct State;
    std::unique_ptr<State> state_;
    Header header_{};
};

} // namespace zv::journal
