#include "robot/Transcript.h"
#include "robot/Verbs.h"

#include <cstdlib>

namespace zv {
namespace {

/// A command as it would be written anew.
String written(const GuionCommand& command)
{
    String line = command.verb;
    for (const GuionArgument& each : command.arguments)
        line += u" " + each.name + (each.name.empty() ? u"" : u"=") +
                (each.quoted ? zv::quoted(each.text) : each.text);
    return line;
}

bool holds(std::string_view bytes)
{
    const Guion guion = readGuion(bytes);
    Transcript seen(guion);
    String whole;
    for (const GuionLine& line : guion.lines) {
        whole += line.text + line.ending;
        if (line.command)
            seen.begin();
        if (line.expectation)
            seen.observe(*line.expectation);
    }
    // What is seen as it was expected is no difference, and is written back as it stood.
    if (toUtf8(whole) != bytes || !seen.differences().empty() || !seen.text().starts_with(whole))
        return false;
    for (const GuionCommand& command : guion.commands) {
        checkCommand(command);
        if (written(readGuion(toUtf8(written(command))).commands.front()) != written(command))
            return false;
    }
    return true;
}

} // namespace
} // namespace zv

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    try {
        if (!zv::holds({reinterpret_cast<const char*>(data), size}))
            std::abort();
    } catch (const zv::GuionError& error) {
        if (error.line() < 1 || error.line() > size + 1)
            std::abort();
    }
    return 0;
}
