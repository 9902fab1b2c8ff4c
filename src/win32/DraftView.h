#pragma once

#include "views/WindowAids.h"
#include "win32/System.h"

#include <vector>

namespace zv::win32 {

/// Modal window with a draft field by field, to be read and copied: a table, and under it the whole of the
/// chosen line. Returns when it is closed.
void showDraft(HWND owner, const Font& font, const String& heading, const std::vector<DraftRow>& rows);

} // namespace zv::win32
