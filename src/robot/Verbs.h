#pragma once

#include "robot/Guion.h"
#include "runtime/Value.h"

#include <optional>
#include <span>

namespace zv {

class Play;

using GuionArguments = std::vector<GuionArgument>;

/// A command of the language. `arguments` is its signature, a letter for each argument: n whole number, t
/// text in quotes, w bare word, c name of a control, e number or text, p path of a property ("txtX.Text"), a
/// assignment ("Accion=2"). Behind "?" they are optional; "+" repeats the last one.
struct Verb {
    StringView name;
    StringView arguments;
    void (*run)(Play& play, const GuionArguments& arguments);
};

std::span<const Verb> settingUpVerbs();
std::span<const Verb> callingVerbs();
std::span<const Verb> actingVerbs();
std::span<const Verb> lookingVerbs();

/// Lookup without regard to case; nullptr if there is none.
const Verb* findVerb(StringView name);
/// Static check: fails with a GuionError for an unknown verb or arguments that do not match its signature.
void checkCommand(const GuionCommand& command);

/// Parsed "List(3)": a name, with whole numbers in parentheses.
struct MemberName {
    String name;
    std::vector<Long> indices;
};
std::optional<MemberName> parseMember(StringView text);
/// Parses a whole number of 32 bits.
std::optional<Long> parseNumber(StringView text);
/// The number in an argument; precondition: checkCommand() passed.
Long numberIn(const GuionArgument& argument);

} // namespace zv
