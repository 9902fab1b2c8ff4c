#pragma once

#include "runtime/Value.h"

#include <string_view>
#include <vector>

namespace zv {

/// Lists as text, for spreadsheets and from them (RFC 4180).

/// A record of a list.
struct CsvLine {
    Long line = 0; ///< Line of the file in which it begins, from 1.
    std::vector<String> cells;
};

/// Decodes a file: UTF-8 or UTF-16 by its byte order mark; without one UTF-8 if all of it is, else
/// Windows-1252. Fails with a std::invalid_argument that says in Spanish what to do: for a spreadsheet's own
/// format, and for bytes that are no text.
String csvText(std::string_view bytes);
/// Parses the records. What parts the cells is that of semicolon, comma and tab which stands most often in
/// the first record outside of quotes; where none does, a record is one cell. Records without any text are
/// left out. Fails with a std::invalid_argument, in Spanish with the line, for quotes that do not match.
std::vector<CsvLine> csvLines(StringView text);

/// A text as a cell of a list with semicolons: escaped, and marked with an apostrophe where a spreadsheet
/// would take it for a formula.
String csvCell(StringView text);
/// Inverse of that mark: the text that a parsed cell stands for.
StringView csvContent(StringView cell);

} // namespace zv
