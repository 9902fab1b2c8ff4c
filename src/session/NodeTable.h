#pragma once

#include "runtime/Value.h"

#include <span>

namespace zv {

/// Row of the table of nodes: a node of the host's tree that this module serves.
struct ModuleNode {
    Byte number;
    StringView dialog;     ///< Name of the form.
    bool opens;            ///< ActivarFormulario shows the dialog.
    bool guards;           ///< Eliminar asks the dialog's guard.
    StringView title;      ///< What a school calls the list.
    StringView table = {}; ///< Table of the rows behind the node; empty where the dialog works on no row.

    /// Column of the session's `lngRowData`; empty without a table.
    StringView key() const;
};

/// The table of nodes, each number once: facade, hosts, random acts and documents read it.
std::span<const ModuleNode> moduleNodes();
/// The node of that number, or nullptr where the module serves none.
const ModuleNode* moduleNode(Byte number);

} // namespace zv
