#pragma once

#include "runtime/String.h"

#include <zvconfiguracion/automation.h>

namespace zv::com {

/// Converts a length-prefixed text (BSTR); it may contain zeros. nullptr is "".
String textOf(const std::uint16_t* text);
/// Allocates one, owned by the receiver. Fails with std::bad_alloc.
ZvBstr newText(StringView text);

} // namespace zv::com
