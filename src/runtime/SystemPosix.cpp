#include "runtime/System.h"

#include <cstdlib>

namespace zv {

std::optional<std::string> environment(const char* name)
{
    const char* value = std::getenv(name);
    return value ? std::optional<std::string>(value) : std::nullopt;
}

std::filesystem::path pathInEnvironment(const char* name) { return environment(name).value_or(""); }

std::optional<char16_t> chosenDecimalMark() { return std::nullopt; }

String wordsFor(const std::error_code& error) { return fromUtf8(error.message()); }

} // namespace zv
