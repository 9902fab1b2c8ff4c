#pragma once

#include "runtime/String.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace zv {

/// A mistake in a guion: the line, counted from 1, and a Spanish reason.
class GuionError : public std::runtime_error {
public:
    GuionError(std::size_t line, StringView reason) : runtime_error(toUtf8(reason)), line_(line) {}
    std::size_t line() const { return line_; }

private:
    std::size_t line_;
};

/// One argument of a command as it is written: a bare word, a text in quotes, or either behind "NAME=".
struct GuionArgument {
    String name; ///< What stands before "=", or "".
    String text; ///< Escapes are resolved.
    bool quoted = false;
};

struct GuionCommand {
    std::size_t line = 0; ///< From 1.
    String verb;
    std::vector<GuionArgument> arguments;
};

/// A line of the file, with what it means.
struct GuionLine {
    String text;                        ///< Without its ending.
    String ending;                      ///< "\n", "\r\n", or "" for a last line that has none.
    std::optional<String> expectation;  ///< What stands behind "> ".
    std::optional<std::size_t> command; ///< Place among the commands.
};

struct Guion {
    std::vector<GuionLine> lines;
    std::vector<GuionCommand> commands;
};

/// Fails with a GuionError where the bytes are no UTF-8 or a line is none of the language.
Guion readGuion(std::string_view bytes);

/// A text in quotes, with escapes.
String quoted(StringView text);

} // namespace zv
