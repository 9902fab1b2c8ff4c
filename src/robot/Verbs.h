#pragma once

#include "robot/Guion.h"
#include "runtime/Value.h"

#include <optional>
#include <span>

namespace zv {

class Play;

using GuionArguments = std::vector<GuionArgument>;

/// A command of the language. `arguments` has a letter for each argument: n whole number, t text in quotes, w
/// bare word, c name of a control, e number or text, p something to look at ("txtX.Text"), a assignment
/// ("Accion=2"). What follows "?" may be left out; "+" lets the last one come again.
struct Verb {
    StringView name;
    StringView arguments;
    void (*run)(Play& play, const GuionArguments& arguments);
};

std::span<const Verb> settingUpVerbs();
std::span<const Verb> callingVerbs();
std::span<const Verb> actingVerbs();
std::span<const Verb> lookingVerbs();

/// nullptr if there is none.
const Verb* findVerb(StringView name);
/// Fails with a GuionError if the verb is unknown or its arguments are not as they should be.
void checkCommand(const GuionCommand& command);

/// "List(3)": a name, with whole numbers in parentheses.
struct MemberName {
    String name;
    std::vector<Long> indices;
};
std::optional<MemberName> parseMember(StringView text);
/// A whole number of 32 bits.
std::optional<Long> parseNumber(StringView text);
/// The number in an argument that was checked.
Long numberIn(const GuionArgument& argument);

} // namespace zv
