#include "robot/OddTexts.h"

#include <set>

namespace zv {

namespace {

constexpr char16_t nul = 0;
constexpr char16_t high = 0xD83D;
constexpr char16_t low = 0xDE00;

/// Building blocks; each is tried alone and inside other texts.
constexpr StringView pieces[] = {
    // Quotes, and look-alikes that a conversion to a code page may turn into one.
    u"'",
    u"''",
    u"'''",
    u"\"",
    u"`",
    u"\u00B4",
    u"\u2019",
    u"\u02BC",
    u"\uFF07",
    u"\u2018\u201C\u201D",
    // SQL injection, and parameter marks and escapes of drivers.
    u"'; DROP TABLE Alumno; --",
    u"' OR '1'='1",
    u"'); DELETE FROM Banco; --",
    u"1; SELECT 1",
    u"-- resto",
    u"/* resto",
    u"*/",
    u"' + '",
    u"' || '",
    u"' & '",
    u"* From",
    u";",
    u"Null",
    u"?",
    u":1",
    u"@p",
    u"#1/2/2024#",
    u"[x]",
    u"{}",
    u"{fn now()}",
    u"{d '2024-01-01'}",
    u"$$'$$",
    u"E'\\''",
    u"U&'\\0027'",
    u"%s%n%",
    u"_",
    u"char(39)",
    u"0x27",
    u"1e309",
    u"-0",
    // Backslashes.
    u"\\",
    u"\\\\",
    u"\\'",
    u"\\n\\0\\u0027",
    // Control characters; a text box truncates at code 0.
    {&nul, 1},
    u"\u0001\u001F",
    u"\t",
    u"\r\n",
    u"\n",
    u"\u001B[2J",
    u"\u007F\u0085\u009F",
    u"\u2028\u2029",
    u"\uFEFF\uFFFE\uFFFF",
    u"\u00A0\u3000\u200B\u00AD",
    // Right-to-left scripts and override marks.
    u"\u05E9\u05DC\u05D5\u05DD",
    u"\u0645\u0631\u062D\u0628\u0627",
    u"\u202Etxet\u202C",
    u"\u2066a\u2069\u200F",
    // Emoji, single and joined (ZWJ sequences).
    u"\U0001F600",
    u"\U0001F468\u200D\U0001F469\u200D\U0001F467",
    u"\U0001F1EA\U0001F1F8",
    u"\U0001F44D\U0001F3FF",
    // Combining marks, and letters whose case mapping or width is not simple.
    u"e\u0301",
    u"\u0308",
    u"Z\u0321\u0327\u0316\u0317\u0300\u0301\u0302\u0303\u030A",
    u"\u1112\u1161\u11AB",
    u"\u00DF\u0130\u0131\u01C4\uFB03",
    u"\u00D1\u00C7\u20AC\u00BA",
    u"\u4E2D\u6587\U00020000",
    // Lone surrogates, or in the wrong order.
    {&high, 1},
    {&low, 1}};

String repeated(StringView piece, std::size_t units)
{
    String result;
    while (result.size() < units)
        result += piece;
    result.resize(units);
    return result;
}

} // namespace

std::vector<String> oddTexts()
{
    std::set<String> result;
    for (const StringView piece : pieces)
        result.merge(std::set<String>{String(piece), u"Ana" + String(piece) + u"Ruiz",
                                      String(piece) + u"'" + String(piece)});
    result.insert(String(1, low) + high);
    for (const std::size_t units : {std::size_t{200}, std::size_t{70000}})
        for (const StringView piece : {u"a", u"'", u"\\", u"\U0001F600", u"e\u0301"})
            result.insert(repeated(piece, units));
    return {result.begin(), result.end()};
}

} // namespace zv
