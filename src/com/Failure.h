#pragma once

#include "runtime/Errors.h"

#include <zvconfiguracion/automation.h>

namespace zv::com {

/// A call that is refused by the surface itself, before our code runs.
struct Refusal {
    ZvResult result = ZV_E_UNEXPECTED;
    std::size_t argument = 0; ///< Which one is to blame, in order.
};

/// How a failure of ours is told to a host.
ZvResult resultOf(std::int32_t number);
/// Fills in what a host is told beyond the result: number, text, source.
void describe(ZvException& exception, std::int32_t number, StringView text);

/// Fails as a host's call did. `exception` may be empty; its texts are freed.
[[noreturn]] void failAs(ZvResult result, ZvException& exception, StringView member);

} // namespace zv::com
