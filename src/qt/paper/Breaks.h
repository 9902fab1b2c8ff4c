#pragma once

class QTextDocument;

namespace zv::paper {

/// Moves the page breaks of a document that is laid out in pages: no heading stands alone at a page's end,
/// and no row of a table is broken that fits on a page. A table that goes on over the page has its head
/// again.
void breakWell(QTextDocument& document);

} // namespace zv::paper
