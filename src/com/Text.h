#pragma once

#include "runtime/String.h"

#include <zvconfiguracion/automation.h>

namespace zv::com {

/// A text of the surface, whole: what stands behind a zero in it belongs to it. No text is "".
String textOf(const std::uint16_t* text);
/// A new text, which the receiver frees. Fails with std::bad_alloc.
ZvBstr newText(StringView text);

} // namespace zv::com
