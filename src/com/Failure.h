#pragma once

#include "runtime/Errors.h"

#include <zvconfiguracion/automation.h>

namespace zv::com {

/// Exception for a call that the binary interface itself refuses, before our code runs.
struct Refusal {
    ZvResult result = ZV_E_UNEXPECTED;
    std::size_t argument = 0; ///< Position of the offending one.
};

/// Maps an error number of ours to a result code.
ZvResult resultOf(std::int32_t number);
/// Fills the exception record of a host: number, text, source.
void describe(ZvException& exception, std::int32_t number, StringView text);

/// Throws a host's failure as RuntimeError. `exception` may be empty; takes ownership of its texts.
[[noreturn]] void failAs(ZvResult result, ZvException& exception, StringView member);

} // namespace zv::com
