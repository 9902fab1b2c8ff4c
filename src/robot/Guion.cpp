#include "robot/Guion.h"

#include <utility>

namespace zv {

namespace {

constexpr StringView blanks = u" \t";

constexpr std::pair<char16_t, char16_t> escapes[] = {
    {u'"', u'"'}, {u'\\', u'\\'}, {u'n', u'\n'}, {u'r', u'\r'}, {u't', u'\t'}};

constexpr StringView strayReturn = u"las líneas acaban en LF o en CR LF, no en CR";

/// Reads the words of one command.
class LineReader {
public:
    LineReader(StringView text, std::size_t line) : rest_(text), line_(line) { skipBlanks(); }

    GuionCommand command()
    {
        GuionCommand result{line_, String(bare()), {}};
        if (result.verb.empty())
            mistake(u"una orden empieza por su verbo");
        endOfWord();
        while (!rest_.empty()) {
            result.arguments.push_back(argument());
            endOfWord();
        }
        return result;
    }

private:
    GuionArgument argument()
    {
        GuionArgument result;
        if (rest_.front() != u'"')
            result.text = bare();
        if (!rest_.empty() && rest_.front() == u'=') {
            rest_.remove_prefix(1);
            result.name = std::exchange(result.text, {});
            if (result.name.empty())
                mistake(u"falta el nombre delante de =");
            if (rest_.empty() || rest_.front() != u'"')
                result.text = bare();
            if (result.text.empty() && (rest_.empty() || rest_.front() != u'"'))
                mistake(u"falta el valor detrás de =");
        }
        if (result.text.empty() && !rest_.empty() && rest_.front() == u'"') {
            result.text = text();
            result.quoted = true;
        }
        return result;
    }

    StringView bare()
    {
        const StringView word = rest_.substr(0, rest_.find_first_of(u" \t\r\"="));
        rest_.remove_prefix(word.size());
        return word;
    }

    String text()
    {
        String result;
        rest_.remove_prefix(1);
        while (!rest_.empty() && rest_.front() != u'"') {
            char16_t unit = rest_.front();
            rest_.remove_prefix(1);
            if (unit == u'\\')
                unit = escaped();
            result += unit;
        }
        if (rest_.empty())
            mistake(u"al texto le faltan las comillas del final");
        rest_.remove_prefix(1);
        return result;
    }

    char16_t escaped()
    {
        const char16_t written = rest_.empty() ? u' ' : rest_.front();
        for (const auto& [letter, meaning] : escapes)
            if (letter == written) {
                rest_.remove_prefix(1);
                return meaning;
            }
        mistake(u"detrás de \\ va una de estas: \" \\ n r t");
    }

    void endOfWord()
    {
        if (rest_.starts_with(u'\r'))
            mistake(strayReturn);
        if (!rest_.empty() && blanks.find(rest_.front()) == StringView::npos)
            mistake(u"falta un blanco delante de " + String(cut(rest_, 20)));
        skipBlanks();
    }

    void skipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(blanks), rest_.size())); }

    [[noreturn]] void mistake(StringView reason) const { throw GuionError(line_, reason); }

    StringView rest_;
    std::size_t line_;
};

void understand(Guion& guion, GuionLine& line, std::size_t number)
{
    StringView text = line.text;
    constexpr StringView byteOrderMark = u"\uFEFF";
    if (number == 1 && text.starts_with(byteOrderMark))
        text.remove_prefix(byteOrderMark.size());
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == StringView::npos)
        return;
    if (text[first] == u'#') {
        // Else a file whose lines end in CR alone would be one comment, which is always right.
        if (text.find(u'\r') != StringView::npos)
            throw GuionError(number, strayReturn);
        return;
    }
    if (text.front() == u'>') {
        if (!text.starts_with(u"> "))
            throw GuionError(number, u"detrás de > va un blanco");
        if (guion.commands.empty())
            throw GuionError(number, u"no hay ninguna orden encima de lo que se espera");
        line.expectation = String(text.substr(2));
        return;
    }
    line.command = guion.commands.size();
    guion.commands.push_back(LineReader(text, number).command());
}

String decoded(std::string_view bytes, std::size_t number)
{
    try {
        return fromUtf8(bytes);
    } catch (const std::invalid_argument&) {
        throw GuionError(number, u"la línea no está en UTF-8");
    }
}

} // namespace

Guion readGuion(std::string_view bytes)
{
    Guion guion;
    while (!bytes.empty()) {
        const std::size_t number = guion.lines.size() + 1;
        const std::size_t end = bytes.find('\n');
        GuionLine line;
        line.text = decoded(bytes.substr(0, end), number);
        line.ending = end == std::string_view::npos ? u"" : u"\n";
        if (line.text.ends_with(u'\r')) {
            line.text.pop_back();
            line.ending.insert(0, u"\r");
        }
        understand(guion, line, number);
        guion.lines.push_back(std::move(line));
        bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
    }
    return guion;
}

String quoted(StringView text)
{
    String result = u"\"";
    for (const char16_t unit : text) {
        char16_t letter = 0;
        for (const auto& [written, meaning] : escapes)
            if (meaning == unit)
                letter = written;
        if (letter != 0)
            result += u'\\';
        result += letter != 0 ? letter : unit;
    }
    return result + u"\"";
}

} // namespace zv
