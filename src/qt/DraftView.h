#pragma once

#include "views/WindowAids.h"

class QWidget;

namespace zv {

/// Modal window with a draft field by field, to be read and copied. Blocks until it is closed.
void showDraft(QWidget& owner, const String& heading, const std::vector<DraftRow>& rows);

} // namespace zv
