#include "runtime/Csv.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace zv {
namespace {

using namespace std::string_literals;

/// The records as "line:cell|cell" a line each, or why there are none.
std::string read(const std::string& bytes)
{
    std::string result;
    try {
        for (const CsvLine& each : csvLines(csvText(bytes))) {
            result += std::to_string(each.line) + ":";
            for (const String& cell : each.cells)
                result += toUtf8(cell) + "|";
            result.back() = '\n';
        }
    } catch (const std::invalid_argument& error) {
        result = error.what();
    }
    return result;
}

} // namespace

TEST(Csv, reads_what_spreadsheets_write)
{
    const std::string noText = "El fichero no es texto. Guárdelo como CSV, en UTF-8, y repita la orden.";
    const std::pair<std::string, std::string> files[] = {
        {"\xEF\xBB\xBF"s + "a;b\r\n1,5;\"x;\"\"y\"\"\r\nz\"\r\n\r\n;\r\n2;\r\n",
         "1:a|b\n2:1,5|x;\"y\"\r\nz\n6:2|\n"},
        {"a,b;c\n1,2", "1:a,b|c\n2:1,2\n"}, // A tie: spreadsheets in Spain write semicolons.
        {"\"a,b,c\"\tb\n1\t \n", "1:a,b,c|b\n2:1| \n"},
        {"Nombre\rPan, leche; o no\r", "1:Nombre\n2:Pan, leche; o no\n"},
        {"sep=;\r\na,b;c,d\r\n", "2:a,b|c,d\n"},
        {"Ni\xF1o \x80\n", "1:Niño €\n"},
        {"Niño €\n", "1:Niño €\n"},
        {"\xFF\xFE"s + "a\0\t\0\xF1\0"s, "1:a|ñ\n"},
        {"", ""},
        {"a\n\"b\nc", "En la línea 2 empiezan unas comillas que no se cierran."},
        {"a\n\"b\"c", "En la línea 2 hay letras detrás de unas comillas que se cierran."},
        {"a\0b"s, noText},
        {"\x81\x8D", noText},
        {"PK\x03\x04...", "El fichero es de una hoja de cálculo. Ábralo con su programa, guárdelo como CSV y "
                          "repita la orden con ese."},
    };
    for (const auto& [bytes, lines] : files)
        EXPECT_EQ(read(bytes), lines) << bytes;
}

TEST(Csv, what_is_written_comes_back_and_no_formula_is_left)
{
    for (const StringView text :
         {u"",     u"a", u" a ", u"=1", u"'=1", u"''=1", u"'a",  u"'",      u"-5",     u"'-5",
          u"+5,5", u"-", u"--5", u"@x", u"\tx", u"\rx",  u"a;b", u"a\"b\"", u"a\r\nb", u"+34 600"}) {
        const String cell = csvLines(u"x;y\r\n" + csvCell(text) + u";-\r\n").at(1).cells[0];
        EXPECT_EQ(toUtf8(csvContent(cell)), toUtf8(text));
        EXPECT_NE(cell.find_first_of(u"=@\t\r"), 0U);
    }
}

} // namespace zv
