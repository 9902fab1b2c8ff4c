#pragma once

#include "runtime/Value.h"

#include <span>

namespace zv {

/// Row of the table of nodes: a node of the host's tree that this module serves.
struct ModuleNode {
    StringView dialog;     ///< Name of the form.
    StringView title;      ///< What a school calls the list.
    StringView table = {}; ///< The rows behind the node; empty where the dialog works on no row.
    Byte number = 0;
    bool opens = false;  ///< ActivarFormulario shows the dialog.
    bool guards = false; ///< Eliminar asks the dialog's guard.

    /// Column of the session's `lngRowData`; empty without a table.
    StringView key() const;
};

/// The table of nodes, each number once: facade, hosts, random acts and documents read it.
std::span<const ModuleNode> moduleNodes();
/// The node of that number, or nullptr where the module serves none.
const ModuleNode* moduleNode(Byte number);

} // namespace zv
