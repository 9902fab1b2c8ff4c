#pragma once

#include "runtime/String.h"

#include <initializer_list>
#include <map>
#include <span>
#include <stdexcept>
#include <vector>

namespace zv::zvconf {

/// What the program ends with.
enum Exit : int {
    done = 0,
    found = 1, ///< It ran, and what it looked at is not as it should be.
    failed = 2 ///< It could not run.
};

/// What stands behind the name of a command.
using Arguments = std::span<const String>;

struct Command {
    StringView name;
    int (*run)(Arguments arguments);
};

int crear(Arguments arguments);
int comprobar(Arguments arguments);
int registros(Arguments arguments);
int clave(Arguments arguments);
int guion(Arguments arguments);
int azar(Arguments arguments);
int textos(Arguments arguments);
int nodos(Arguments arguments);

/// A command line that cannot be understood; the text is Spanish.
class UsageError : public std::runtime_error {
public:
    explicit UsageError(StringView text) : runtime_error(toUtf8(text)) {}
};

/// An option and how many values follow it.
struct Option {
    StringView name;
    std::size_t values = 0;
};

/// The options of a command line. One that is not known, comes twice or lacks its values fails with a
/// UsageError.
class Options {
public:
    Options(Arguments arguments, std::initializer_list<Option> known);
    bool has(StringView name) const { return given_.contains(name); }
    /// Fails with a UsageError if the option is not there.
    const std::vector<String>& values(StringView name) const;

private:
    std::map<String, std::vector<String>, std::less<>> given_;
};

/// A line on standard output.
void printLine(StringView line);

} // namespace zv::zvconf
