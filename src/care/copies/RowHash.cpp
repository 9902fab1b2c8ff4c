#include "care/copies/RowHash.h"

#include "crypto/Sodium.h"
#include "data/Statement.h"
#include "runtime/Convert.h"

#include <sodium.h>

#include <cstring>

namespace zv::care {
namespace {

/// Appends a text with its length in front, so that no two rows are written alike.
void append(std::string& bytes, char kind, StringView text)
{
    const auto size = static_cast<std::uint32_t>(text.size());
    bytes += kind;
    for (int shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>(size >> shift);
    for (const char16_t unit : text) {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8);
    }
}

} // namespace

RowHash::RowHash(const std::vector<String>& columns)
{
    crypto::useSodium();
    for (const String& each : columns)
        append(head_, 'c', lowerName(each));
}

void RowHash::add(const std::vector<Value>& row, std::array<std::uint64_t, 4>& sum)
{
    bytes_ = head_;
    for (const Value& each : row) {
        const auto* text = each.as<String>();
        append(bytes_, text != nullptr ? 't' : (each.isNull() ? '0' : 'n'),
               text != nullptr ? StringView(*text) : StringView(literal(each)));
    }
    std::array<std::uint64_t, 4> hash{};
    std::string room(sizeof hash, '\0');
    crypto_generichash(crypto::bytesOf(room), room.size(), crypto::bytesOf(std::string_view(bytes_)),
                       bytes_.size(), nullptr, 0);
    std::memcpy(hash.data(), room.data(), room.size());
    for (std::size_t i = 0; i < sum.size(); ++i)
        sum[i] += hash[i];
}

} // namespace zv::care
