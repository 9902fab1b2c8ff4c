#include "zvconf/System.h"

#include "zvconf/Command.h"

#include <csignal>
#include <iostream>

namespace zv::zvconf {

std::vector<String> commandLine(std::span<char*> arguments)
{
    std::vector<String> words;
    for (const char* argument : arguments)
        try {
            words.push_back(fromUtf8(argument));
        } catch (const std::invalid_argument&) {
            throw UsageError(u"La línea de órdenes no está en UTF-8: ponga en UTF-8 el terminal, o cambie el "
                             u"nombre del fichero.");
        }
    return words;
}

std::span<const int> endingSignals()
{
    static constexpr int signals[] = {SIGINT, SIGTERM, SIGHUP};
    return signals;
}

StageMaker windowStage()
{
    throw UsageError(u"Aquí las ventanas las abre «zvhost guion»; --ventanas es de zvconf en Windows.");
}

std::unique_ptr<Desktop> windowDesktop()
{
    throw UsageError(u"Aquí las ventanas las abre «zvhost dialogo»; esta orden es de zvconf en Windows.");
}

Gallery drawWindows(const String& /*folder*/, const School& /*school*/)
{
    throw UsageError(u"Aquí las ventanas las dibuja «zvhost galeria»; esta orden es de zvconf en Windows.");
}

// Streams take bytes as they are.
Utf8Output::Utf8Output() = default;
Utf8Output::~Utf8Output() { std::cout.flush(); }

} // namespace zv::zvconf
