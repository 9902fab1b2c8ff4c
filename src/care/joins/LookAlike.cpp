#include "care/joins/LookAlike.h"

#include <algorithm>
#include <array>

namespace zv::care {
namespace {

constexpr char16_t tilde = 0x0303;
constexpr char16_t cedilla = 0x0327;

/// Base letters of a block, a unit for each of its characters, which are the letter itself where it has none;
/// ligatures stand in spelledOut().
constexpr StringView latin1 = u"aaaaaaæçeeeeiiii"    // U+00C0
                              u"ðñooooo×øuuuuyþß"    //
                              u"aaaaaaæçeeeeiiii"    // U+00E0
                              u"ðñooooo÷øuuuuyþy";   //
constexpr StringView extended = u"aaaaaaccccccccdd"  // U+0100
                                u"ddeeeeeeeeeegggg"  //
                                u"gggghhhhiiiiiiii"  // U+0120
                                u"iiĳĳjjkkĸlllllll"  //
                                u"lllnnnnnnnŋŋoooo"  // U+0140
                                u"ooœœrrrrrrssssss"  //
                                u"ssttttttuuuuuuuu"  // U+0160
                                u"uuuuwwyyyzzzzzzs"; //
static_assert(latin1.size() == 0x40 && extended.size() == 0x80);

struct Spelled {
    char16_t letter;
    StringView letters;
};
constexpr std::array<Spelled, 4> ligatures = {{{u'æ', u"ae"}, {u'œ', u"oe"}, {u'ß', u"ss"}, {u'ĳ', u"ij"}}};

/// Between `first` and `last`.
constexpr bool in(char16_t unit, char16_t first, char16_t last) { return unit >= first && unit <= last; }

char16_t letterOf(char16_t unit)
{
    if (in(unit, u'A', u'Z'))
        return static_cast<char16_t>(unit + 0x20);
    if (in(unit, 0x00C0, 0x00FF))
        return latin1[unit - 0x00C0U];
    if (in(unit, 0x0100, 0x017F))
        return extended[unit - 0x0100U];
    if (in(unit, 0x0391, 0x03A9) || in(unit, 0x0410, 0x042F)) // Greek, Cyrillic
        return static_cast<char16_t>(unit + 0x20);
    if (in(unit, 0x0400, 0x040F))
        return static_cast<char16_t>(unit + 0x50);
    // The signs of ordinals, which are typed as letters as well.
    if (unit == u'ª' || unit == u'º')
        return unit == u'ª' ? u'a' : u'o';
    return unit;
}

constexpr bool isMark(char16_t unit) { return in(unit, 0x0300, 0x036F); }

/// Also those that cannot be seen: characters without width, of either direction.
constexpr bool isBlank(char16_t unit)
{
    return unit <= u' ' || in(unit, 0x007F, 0x00A0) || unit == 0x00AD || unit == 0x1680 ||
           in(unit, 0x2000, 0x200F) || in(unit, 0x2028, 0x202F) || in(unit, 0x205F, 0x2064) ||
           unit == 0x3000 || unit == 0xFEFF;
}

constexpr bool isDigit(char16_t unit) { return in(unit, u'0', u'9'); }

} // namespace

String folded(StringView text)
{
    String result;
    bool apart = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (isBlank(text[i])) {
            apart = true;
            continue;
        }
        if (isMark(text[i]))
            continue;
        char16_t letter = letterOf(text[i]);
        for (std::size_t mark = i + 1; mark < text.size() && isMark(text[mark]); ++mark) {
            if (text[mark] == tilde && letter == u'n')
                letter = u'ñ';
            if (text[mark] == cedilla && letter == u'c')
                letter = u'ç';
        }
        if (apart && !result.empty() && isDigit(result.back()) && isDigit(letter))
            result += u' ';
        apart = false;
        const auto* const spelled = std::ranges::find(ligatures, letter, &Spelled::letter);
        if (spelled != ligatures.end())
            result += spelled->letters;
        else
            result += letter;
    }
    return result;
}

} // namespace zv::care
