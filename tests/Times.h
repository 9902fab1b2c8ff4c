#pragma once

#include <cstdint>
#include <cstdlib>

namespace zv {

#ifdef __has_feature // clang++ has it.
constexpr bool underSanitizers = __has_feature(address_sanitizer);
#else
constexpr bool underSanitizers = false;
#endif

/// How often a test repeats what it does. Under sanitizers, where each time takes ten times as long and a few
/// of each kind show what they look for, it is less: the default build has proved the rest.
constexpr int brief(int usual, int sanitized) { return underSanitizers ? sanitized : usual; }

/// With ZV_LARGO in the environment, as often as a night allows; else as often as a minute does.
inline int times(int usual, int night) { return std::getenv("ZV_LARGO") != nullptr ? night : usual; }

/// As often as the environment says, by a name of the test's own.
inline int times(const char* variable, int otherwise)
{
    const char* given = std::getenv(variable);
    return given != nullptr ? std::atoi(given) : otherwise;
}

/// How often a test kills what it started.
inline int deaths(int usual, int night) { return times("ZV_MUERTES", times(usual, night)); }

/// Of what a test does by chance, and so of the moments at which it kills; another seed, other moments.
inline std::uint32_t seedOr(std::uint32_t usual)
{
    return static_cast<std::uint32_t>(times("ZV_SEMILLA", static_cast<int>(usual)));
}

} // namespace zv
