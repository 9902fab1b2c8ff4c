#include "runtime/Csv.h"

#include "runtime/Convert.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace zv {
namespace {

constexpr StringView separators = u";,\t";
constexpr StringView formulaSigns = u"=+-@\t\r";

/// What Windows-1252 has from 0x80 to 0x9F; 0 where it has nothing.
constexpr std::array<char16_t, 32> windows1252 = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

[[noreturn]] void refuse(StringView reason) { throw std::invalid_argument(toUtf8(reason)); }

[[noreturn]] void refuseBytes()
{
    refuse(u"El fichero no es texto. Guárdelo como CSV, en UTF-8, y repita la orden.");
}

String fromUtf16(std::string_view bytes, bool bigEndian)
{
    if (bytes.size() % 2 != 0)
        refuseBytes();
    String result;
    for (std::size_t i = 0; i < bytes.size(); i += 2) {
        const auto first = static_cast<unsigned char>(bytes[i]);
        const auto second = static_cast<unsigned char>(bytes[i + 1]);
        result += static_cast<char16_t>(bigEndian ? first << 8 | second : second << 8 | first);
    }
    return result;
}

String fromWindows1252(std::string_view bytes)
{
    String result;
    for (const char each : bytes) {
        const auto byte = static_cast<unsigned char>(each);
        const char16_t unit = byte >= 0x80 && byte < 0xA0 ? windows1252[byte - 0x80U] : char16_t{byte};
        if (byte >= 0x80 && unit == 0)
            refuseBytes();
        result += unit;
    }
    return result;
}

String decoded(std::string_view bytes)
{
    if (bytes.starts_with("\xEF\xBB\xBF"))
        bytes.remove_prefix(3);
    else if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF"))
        return fromUtf16(bytes.substr(2), bytes.front() == '\xFE');
    try {
        return fromUtf8(bytes);
    } catch (const std::invalid_argument&) {
        // A letter of Windows-1252 beyond ASCII followed by another one is hardly ever well-formed UTF-8.
        return fromWindows1252(bytes);
    }
}

/// Whether a spreadsheet would take the text for a formula.
bool isFormula(StringView text)
{
    if (text.empty() || formulaSigns.find(text.front()) == StringView::npos)
        return false;
    const StringView digits = text.substr(1);
    const bool number = StringView(u"+-").find(text.front()) != StringView::npos && !digits.empty() &&
                        digits.find_first_not_of(u"0123456789.,") == StringView::npos;
    return !number;
}

/// Whether it is such a text, marked or not, as often as you like: so that the mark can be taken off again.
bool isFormulaBehindMarks(StringView text)
{
    return isFormula(text.substr(std::min(text.find_first_not_of(u'\''), text.size())));
}

class Parser {
public:
    explicit Parser(StringView text) : text_(text)
    {
        std::array<std::size_t, separators.size()> counts = {};
        bool quoted = false;
        for (const char16_t unit : text) {
            quoted ^= unit == u'"';
            if (!quoted && (unit == u'\r' || unit == u'\n'))
                break;
            if (const std::size_t which = separators.find(unit); !quoted && which != StringView::npos)
                ++counts[which];
        }
        const auto most = std::ranges::max_element(counts);
        if (*most > 0)
            separator_ = separators[static_cast<std::size_t>(most - counts.begin())];
    }

    std::vector<CsvLine> lines()
    {
        std::vector<CsvLine> result;
        // A spreadsheet's word for what parts the cells, in a line of its own.
        if (text_.starts_with(u"sep=") && text_.size() > 6 && (text_[5] == u'\r' || text_[5] == u'\n')) {
            separator_ = text_[4];
            at_ = 5;
            takeLineBreak();
        }
        while (at_ < text_.size()) {
            CsvLine record{.line = line_, .cells = {cell()}};
            while (at_ < text_.size() && separator_ != 0 && text_[at_] == separator_) {
                ++at_;
                record.cells.push_back(cell());
            }
            takeLineBreak();
            if (std::ranges::any_of(record.cells, [](const String& each) { return !Trim(each).empty(); }))
                result.push_back(std::move(record));
        }
        return result;
    }

private:
    bool atEndOfCell() const
    {
        return at_ == text_.size() || text_[at_] == u'\r' || text_[at_] == u'\n' ||
               (separator_ != 0 && text_[at_] == separator_);
    }

    /// Takes one line break, if one stands here, and counts it.
    bool takeLineBreak()
    {
        const StringView rest = text_.substr(at_);
        const std::size_t length = rest.starts_with(u"\r\n")                            ? 2
                                   : rest.starts_with(u'\r') || rest.starts_with(u'\n') ? 1
                                                                                        : 0;
        at_ += length;
        line_ += length > 0 ? 1 : 0;
        return length > 0;
    }

    String cell()
    {
        if (at_ < text_.size() && text_[at_] == u'"')
            return quotedCell();
        const std::size_t start = at_;
        while (!atEndOfCell())
            ++at_;
        return String(text_.substr(start, at_ - start));
    }

    String quotedCell()
    {
        const Long first = line_;
        String result;
        ++at_;
        for (;;) {
            const std::size_t start = at_;
            if (at_ == text_.size())
                refuse(u"En la línea " + decimalText(first) + u" empiezan unas comillas que no se cierran.");
            if (takeLineBreak()) {
                result += text_.substr(start, at_ - start);
                continue;
            }
            ++at_;
            if (text_[start] == u'"') {
                if (at_ == text_.size() || text_[at_] != u'"')
                    break;
                ++at_;
            }
            result += text_[start];
        }
        if (!atEndOfCell())
            refuse(u"En la línea " + decimalText(line_) +
                   u" hay letras detrás de unas comillas que se cierran.");
        return result;
    }

    StringView text_;
    char16_t separator_ = 0;
    std::size_t at_ = 0;
    Long line_ = 1;
};

} // namespace

String csvText(std::string_view bytes)
{
    if (bytes.starts_with("PK\x03\x04") || bytes.starts_with("\xD0\xCF\x11\xE0"))
        refuse(u"El fichero es de una hoja de cálculo. Ábralo con su programa, guárdelo como CSV y repita la "
               u"orden con ese.");
    String text = decoded(bytes);
    if (text.find(u'\0') != String::npos || !isWellFormed(text))
        refuseBytes();
    return text;
}

std::vector<CsvLine> csvLines(StringView text) { return Parser(text).lines(); }

String csvCell(StringView text)
{
    String marked = (isFormulaBehindMarks(text) ? u"'" : u"") + String(text);
    if (marked.find_first_of(u"\";\n\r") == String::npos)
        return marked;
    return u'"' + Replace(marked, u"\"", u"\"\"") + u'"';
}

StringView csvContent(StringView cell)
{
    return cell.starts_with(u'\'') && isFormulaBehindMarks(cell.substr(1)) ? cell.substr(1) : cell;
}

} // namespace zv
