#include "zvconf/Command.h"

#include "module/Module.h"
#include "robot/Monkey.h"
#include "robot/TextTrial.h"
#include "robot/Verbs.h"
#include "runtime/Convert.h"
#include "session/DialogDirectory.h"

#include <algorithm>
#include <iostream>

namespace zv::zvconf {

namespace {

constexpr Option database{u"--bd", 1};

/// Parses an option's value: a whole number from 1.
Long numberOf(const Options& options, StringView name, Long otherwise)
{
    if (!options.has(name))
        return otherwise;
    const auto number = parseNumber(options.values(name).front());
    if (!number || *number < 1)
        throw UsageError(u"El valor de " + String(name) + u" es un número entero desde 1.");
    return *number;
}

} // namespace

int azar(Arguments arguments)
{
    const Options options(arguments,
                          {{u"--semilla", 1}, {u"--actos", 1}, {u"--fallos"}, {u"--consulta"}, database});
    RandomActs wishes;
    wishes.seed = static_cast<std::uint32_t>(numberOf(options, u"--semilla", 1));
    wishes.acts = numberOf(options, u"--actos", wishes.acts);
    wishes.failures = options.has(u"--fallos");
    wishes.readOnly = options.has(u"--consulta");
    if (options.has(database.name))
        wishes.url = options.values(database.name).front();
    installModule();
    return actAtRandom(wishes, std::cout) ? done : found;
}

int textos(Arguments arguments)
{
    const Options options(arguments, {{u"--ventana", 1}, {u"--cada", 1}, database});
    TextTrial trial;
    trial.every = numberOf(options, u"--cada", trial.every);
    if (options.has(database.name))
        trial.url = options.values(database.name).front();
    installModule();
    if (options.has(u"--ventana"))
        trial.dialog = options.values(u"--ventana").front();
    if (!trial.dialog.empty() && std::ranges::none_of(dialogs().names(), [&](const String& each) {
            return sameName(each, trial.dialog);
        }))
        throw UsageError(u"«" + trial.dialog + u"» no es una ventana: «zvconf nodos» las dice.");
    return tryTexts(trial, std::cout) ? done : found;
}

} // namespace zv::zvconf
