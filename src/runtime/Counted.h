#pragma once

#include "runtime/Convert.h"

namespace zv {

/// So many of something, in Spanish: "1 alumno", "3 alumnos".
inline String counted(std::size_t count, StringView one, StringView several)
{
    return decimalText(static_cast<std::int64_t>(count)) + u" " + String(count == 1 ? one : several);
}

} // namespace zv
