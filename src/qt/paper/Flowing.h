#pragma once

#include <QTextDocument>

namespace zv::paper {

/// Makes a document such that Qt's ODF writer keeps all of it: a cell becomes one paragraph with line breaks,
/// since the writer makes a cell of each paragraph; no character is raised; what a table has as a whole,
/// ground and borders, its cells have.
void suitWriter(QTextDocument& document);

} // namespace zv::paper
