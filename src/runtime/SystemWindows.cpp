#include "runtime/System.h"
#include "runtime/SystemWords.h"

#include <windows.h>

namespace zv {
namespace {

/// The environment of the process, which a host may have changed; the one of its C library is a copy, in the
/// code page of the system.
std::optional<std::wstring> variable(const char* name)
{
    const std::wstring wanted(name, name + std::char_traits<char>::length(name));
    std::wstring value;
    DWORD size = GetEnvironmentVariableW(wanted.c_str(), nullptr, 0);
    if (size == 0)
        return std::nullopt;
    // Another thread may make it longer meanwhile.
    while (value.size() < size) {
        value.resize(size);
        size = GetEnvironmentVariableW(wanted.c_str(), value.data(), size);
    }
    value.resize(size);
    return value;
}

} // namespace

std::optional<std::string> environment(const char* name)
{
    const std::optional<std::wstring> value = variable(name);
    return value ? std::optional(toUtf8(String(value->begin(), value->end()))) : std::nullopt;
}

std::filesystem::path pathInEnvironment(const char* name)
{
    const std::optional<std::wstring> value = variable(name);
    return value ? std::filesystem::path(*value) : std::filesystem::path();
}

std::optional<char16_t> chosenDecimalMark()
{
    wchar_t mark[4]{};
    if (GetLocaleInfoEx(LOCALE_NAME_USER_DEFAULT, LOCALE_SDECIMAL, mark, static_cast<int>(std::size(mark))) ==
        0)
        return std::nullopt;
    return static_cast<char16_t>(mark[0]);
}

String systemWords(const std::error_code& error)
{
    wchar_t words[512]{};
    const DWORD size = error.category() != std::system_category()
                           ? 0
                           : FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                            nullptr, static_cast<DWORD>(error.value()), 0, words,
                                            static_cast<DWORD>(std::size(words)), nullptr);
    String text(words, words + size);
    while (!text.empty() && (text.back() <= u' ' || text.back() == u'.'))
        text.pop_back();
    return text.empty() ? u"error " + fromUtf8(std::to_string(error.value())) : text;
}

} // namespace zv
