#pragma once

#include "forms/MSFlexGrid.h"

/// What the views of every desktop know of the controls.
namespace zv {

/// Whether the property says where the control stands and whether it shows, and not what is in it.
bool places(const Control& control, const PropertyBase* property);

/// Whether a grid's lines stand for rows: a click chooses the whole line, not the cell.
bool hasLines(const MSFlexGrid& grid);

/// Diff of two texts: one replacement, of `removed` units from `start` on.
struct TextChange {
    std::size_t start = 0;
    std::size_t removed = 0;
    String inserted;
};
/// Smallest diff of two texts. `caret` is where the new one was just edited; among equal characters it tells
/// which are new.
TextChange changeBetween(StringView before, StringView after, std::size_t caret);

/// How many characters a text box still takes, for a screen reader: roughly, while there is much; to the
/// letter at the end.
String leftInWords(Long left);

} // namespace zv
