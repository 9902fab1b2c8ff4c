#pragma once

#include "runtime/String.h"

#include <initializer_list>
#include <map>
#include <span>
#include <stdexcept>
#include <vector>

namespace zv::zvconf {

/// Exit codes.
enum Exit : int {
    done = 0,
    found = 1,  ///< Ran, and found defects or differences.
    failed = 2, ///< Could not run.
    away = 75   ///< A school's process tells `centros` so: its server did not answer.
};

/// Command-line arguments behind the command's name.
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
int dialogo(Arguments arguments);
int galeria(Arguments arguments);
int mudar(Arguments arguments);
int copia(Arguments arguments);
/// How what it says of a copy without the key begins.
inline constexpr StringView withoutKey = u"No lleva la clave de las enfermedades";
int restaurar(Arguments arguments);
int importar(Arguments arguments);
int historial(Arguments arguments);
int diario(Arguments arguments);
int unir(Arguments arguments);
int progreso(Arguments arguments);
int centros(Arguments arguments);

/// Invalid command line; the text is Spanish.
class UsageError : public std::runtime_error {
public:
    explicit UsageError(StringView text) : runtime_error(toUtf8(text)) {}
};

/// Declaration of an option: its name and number of values.
struct Option {
    StringView name;
    std::size_t values = 0;
};

/// Parser of a command line's options, and of its operands (files, numbers), which stand anywhere among them.
/// An unknown or repeated option, one without its values, an empty one (a script's variable that is not set),
/// or an operand too many fails with a UsageError.
class Options {
public:
    Options(Arguments arguments, std::span<const Option> known, std::size_t mostOperands = 0);
    Options(Arguments arguments, std::initializer_list<Option> known, std::size_t mostOperands = 0)
        : Options(arguments, std::span(known.begin(), known.size()), mostOperands)
    {}
    bool has(StringView name) const { return given_.contains(name); }
    /// Values of a mandatory option; fails with a UsageError if it is missing.
    const std::vector<String>& values(StringView name) const;
    /// Operand by its place, from 0; a UsageError that asks for `what` if there is none, or an empty one.
    const String& operand(std::size_t place, StringView what) const;
    bool hasOperands() const { return !operands_.empty(); }

private:
    std::vector<String> operands_;
    std::map<String, std::vector<String>, std::less<>> given_;
};

/// Writes a line to standard output.
void printLine(StringView line);

} // namespace zv::zvconf
