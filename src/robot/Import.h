#pragma once

#include "data/Connection.h"
#include "runtime/Csv.h"
#include "session/NodeTable.h"

#include <functional>
#include <stdexcept>
#include <vector>

namespace zv {

/// What became of a line of a list.
struct ImportedLine {
    Long line = 0; ///< As in CsvLine.
    bool added = false;
    /// Why it was not added: what the dialog said, or why a person could not have typed it. Also what the
    /// dialog said of one that was added. Spanish, for a person.
    String message;
};

/// A list that cannot be imported, or an import that a lost connection or a locked database ended; the text
/// is Spanish and says what to do. Of a list that cannot be imported nothing was written.
class ImportError : public std::runtime_error {
public:
    explicit ImportError(StringView text) : runtime_error(toUtf8(text)) {}
};

/// Adds the lines of a list to a node's rows, its first line being the headings: for each, the node's dialog
/// is opened for a new row, the cells are typed into its fields (pasted where a filter of keys keeps them
/// out), and «Aceptar» is pressed. So rules, messages and statements are the dialog's own; a refused line is
/// left with «Cancelar», and each row is written by one statement, whole or not at all. In a school's history
/// all of it is one opening, `by`. A heading is that of the reference host's list or the field's own caption,
/// without regard to case and accents. `tell` is called after each line. Fails with an ImportError for a node
/// or headings that it does not take, and after a line at which the database was locked or lost. Numbers have
/// the Spanish decimal comma.
void importList(const School& school, const ModuleNode& node, const std::vector<CsvLine>& lines,
                const Opening& by, const std::function<void(const ImportedLine&)>& tell);

} // namespace zv
