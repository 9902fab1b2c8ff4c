#pragma once

class QWidget;

namespace zv::host {

/// Searches the manual: its paragraphs, by words, without regard to case and accents; a found one opens its
/// page there.
void searchManual(QWidget* parent);

} // namespace zv::host
