#include "runtime/String.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>

namespace zv {

namespace {

constexpr char32_t replacement = 0xFFFD;

bool isHigh(char16_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool isLow(char16_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

char16_t lowerUnit(char16_t unit)
{
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
}

/// Decodes the code point at an index: its value and its number of units.
std::pair<char32_t, std::size_t> decode(StringView text, std::size_t at)
{
    const char16_t unit = text[at];
    if (isHigh(unit) && at + 1 < text.size() && isLow(text[at + 1])) {
        const char32_t high = unit - 0xD800U;
        const char32_t low = text[at + 1] - 0xDC00U;
        return {0x10000U + (high << 10U) + low, 2};
    }
    return {isHigh(unit) || isLow(unit) ? replacement : char32_t{unit}, 1};
}

void appendUtf8(std::string& out, char32_t c)
{
    const auto put = [&out](char32_t byte) { out.push_back(static_cast<char>(byte)); };
    if (c < 0x80) {
        put(c);
    } else if (c < 0x800) {
        put(0xC0U | (c >> 6U));
        put(0x80U | (c & 0x3FU));
    } else if (c < 0x10000) {
        put(0xE0U | (c >> 12U));
        put(0x80U | ((c >> 6U) & 0x3FU));
        put(0x80U | (c & 0x3FU));
    } else {
        put(0xF0U | (c >> 18U));
        put(0x80U | ((c >> 12U) & 0x3FU));
        put(0x80U | ((c >> 6U) & 0x3FU));
        put(0x80U | (c & 0x3FU));
    }
}

void appendUtf16(String& out, char32_t c)
{
    if (c < 0x10000) {
        out.push_back(static_cast<char16_t>(c));
        return;
    }
    out.push_back(static_cast<char16_t>(0xD800U + ((c - 0x10000U) >> 10U)));
    out.push_back(static_cast<char16_t>(0xDC00U + ((c - 0x10000U) & 0x3FFU)));
}

[[noreturn]] void noUtf8() { throw std::invalid_argument("the bytes are not valid UTF-8"); }

/// Decodes a lead byte: length of its sequence, and its payload bits.
std::pair<std::size_t, char32_t> leadOf(unsigned char byte)
{
    if (byte < 0x80)
        return {1, byte};
    if (byte >= 0xC2 && byte < 0xE0)
        return {2, byte & 0x1FU};
    if (byte >= 0xE0 && byte < 0xF0)
        return {3, byte & 0x0FU};
    if (byte >= 0xF0 && byte < 0xF5)
        return {4, byte & 0x07U};
    noUtf8();
}

} // namespace

std::string toUtf8(StringView text)
{
    std::string out;
    out.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const auto [c, units] = decode(text, at);
        appendUtf8(out, c);
        at += units;
    }
    return out;
}

String fromUtf8(std::string_view bytes)
{
    constexpr char32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
    String out;
    out.reserve(bytes.size());
    for (std::size_t at = 0; at < bytes.size();) {
        auto [length, c] = leadOf(static_cast<unsigned char>(bytes[at]));
        if (at + length > bytes.size())
            noUtf8();
        for (std::size_t i = 1; i < length; ++i) {
            const auto byte = static_cast<unsigned char>(bytes[at + i]);
            if ((byte & 0xC0U) != 0x80)
                noUtf8();
            c = (c << 6U) | (byte & 0x3FU);
        }
        if (c < least[length] || c > 0x10FFFF || (c >= 0xD800 && c < 0xE000))
            noUtf8();
        appendUtf16(out, c);
        at += length;
    }
    return out;
}

bool isWellFormed(StringView text)
{
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (isLow(text[at]))
            return false;
        if (isHigh(text[at]) && (++at == text.size() || !isLow(text[at])))
            return false;
    }
    return true;
}

StringView cut(StringView text, std::size_t units)
{
    if (text.size() <= units)
        return text;
    const bool partsPair = units > 0 && isHigh(text[units - 1]) && isLow(text[units]);
    return text.substr(0, partsPair ? units - 1 : units);
}

bool sameName(StringView a, StringView b)
{
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char16_t x, char16_t y) {
               return lowerUnit(x) == lowerUnit(y);
           });
}

String lowerName(StringView name)
{
    String lower(name);
    std::transform(lower.begin(), lower.end(), lower.begin(), lowerUnit);
    return lower;
}

bool NameLess::operator()(StringView a, StringView b) const
{
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                        [](char16_t x, char16_t y) { return lowerUnit(x) < lowerUnit(y); });
}

std::size_t NameHash::operator()(StringView name) const
{
    constexpr std::uint64_t basis = 0xCBF29CE484222325; // FNV-1a
    constexpr std::uint64_t prime = 0x100000001B3;
    std::uint64_t hash = basis;
    for (const char16_t unit : name)
        hash = (hash ^ lowerUnit(unit)) * prime;
    return static_cast<std::size_t>(hash);
}

String Trim(StringView text)
{
    const std::size_t first = text.find_first_not_of(u' ');
    if (first == StringView::npos)
        return {};
    return String(text.substr(first, text.find_last_not_of(u' ') - first + 1));
}

String Replace(StringView text, StringView what, StringView by)
{
    if (what.empty())
        return String(text);
    String out;
    std::size_t from = 0;
    for (std::size_t at = text.find(what); at != StringView::npos; at = text.find(what, from)) {
        out.append(text.substr(from, at - from)).append(by);
        from = at + what.size();
    }
    return out.append(text.substr(from));
}

} // namespace zv
