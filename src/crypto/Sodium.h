#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// What every floor that enciphers or hashes shares of the library (libsodium). Its functions are called
/// where they are needed; how it is begun, how it takes characters and how bytes become text stand here.
namespace zv::crypto {

/// Initialises the library: required before any other call, again does no harm. Fails with a
/// std::runtime_error, in Spanish, where the machine gives no random numbers.
void useSodium();

/// Characters as the library takes them.
const unsigned char* bytesOf(std::string_view text);
unsigned char* bytesOf(std::string& text);

/// Whether base64 is filled up with "=" to fours of characters.
enum class Base64 { Padded, Unpadded };

std::string toBase64(std::span<const unsigned char> bytes, Base64 kind);
/// Nullopt where the text is no base64 of that kind.
std::optional<std::vector<unsigned char>> fromBase64(std::string_view text, Base64 kind);

} // namespace zv::crypto
