#pragma once

#include "runtime/String.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace zv {

/// Syntax error or misuse in a guion: the line, counted from 1, and a Spanish reason.
class GuionError : public std::runtime_error {
public:
    GuionError(std::size_t line, StringView reason) : runtime_error(toUtf8(reason)), line_(line) {}
    std::size_t line() const { return line_; }

private:
    std::size_t line_;
};

/// Parsed argument of a command: a bare word, a text in quotes, or either behind "NAME=".
struct GuionArgument {
    String name;         ///< What stands before "=", or "".
    String text;         ///< Without quotes, escapes resolved.
    bool quoted = false; ///< Whether it stood in quotes.
};

struct GuionCommand {
    std::size_t line = 0; ///< From 1.
    String verb;
    std::vector<GuionArgument> arguments;
};

/// A line of the file, and what the parser made of it.
struct GuionLine {
    String text;                        ///< Without its ending.
    String ending;                      ///< "\n", "\r\n", or what a last line has of it: "" or "\r".
    std::optional<String> expectation;  ///< What stands behind "> ".
    std::optional<std::size_t> command; ///< Index into `commands`.
};

struct Guion {
    std::vector<GuionLine> lines;
    std::vector<GuionCommand> commands;
};

/// Parses a file. Fails with a GuionError on invalid UTF-8 and on a syntax error.
Guion readGuion(std::string_view bytes);

/// Inverse of the parser for a text: in quotes, with escapes.
String quoted(StringView text);

} // namespace zv
