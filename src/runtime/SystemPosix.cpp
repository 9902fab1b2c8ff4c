#include "runtime/System.h"
#include "runtime/SystemWords.h"

#include <cerrno>
#include <cstdlib>
#include <system_error>

namespace zv {

std::optional<std::string> environment(const char* name)
{
    const char* value = std::getenv(name);
    return value ? std::optional<std::string>(value) : std::nullopt;
}

std::filesystem::path pathInEnvironment(const char* name) { return environment(name).value_or(""); }

std::optional<char16_t> chosenDecimalMark() { return std::nullopt; }

String systemWords(const std::error_code& error)
{
    if (error == std::error_code(EDQUOT, std::generic_category()))
        return u"se ha acabado su cuota de disco";
    return fromUtf8(error.message());
}

} // namespace zv
