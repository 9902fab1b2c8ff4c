#include "data/Cells.h"

#include "runtime/Convert.h"

namespace zv {

Long longIn(const Value& value) { return value.isNull() || value.isEmpty() ? 0 : CLng(value); }

String textIn(const Value& value) { return String() + value; }

bool isBlank(StringView text) { return text.find_first_not_of(u" \t\r\n\u00A0") == StringView::npos; }

} // namespace zv
