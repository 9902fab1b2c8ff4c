#pragma once

#include "runtime/Value.h"

#include <span>

namespace zv::host {

/// Descriptor of a column of a node's list.
struct ListColumn {
    enum class Kind {
        text,
        number,
        flag,
        word,
        enciphered,
        progress ///< A text like "18 de 23".
    };
    StringView title;
    Kind kind = Kind::text;
    std::span<const StringView> words = {}; ///< For Kind::word: what 1, 2, … stand for.
};

/// Node of the host's tree: the module knows its number, a school its name.
struct Node {
    Byte number = 0;
    StringView group;
    StringView name; ///< Name of the whole list.
    StringView one;  ///< Name of one of its rows, in small letters.
    StringView form; ///< Name of the dialog behind it.
    StringView table = {};
    StringView key = {};
    /// Query of the rows: the key, then the columns. Empty: the node has no list and opens its dialog
    /// directly.
    StringView query = {};
    std::span<const ListColumn> columns = {};

    bool hasList() const { return !query.empty(); }
    /// A node of the reports: no list of its own, but one of the sections.
    bool hasSections() const { return query.empty() && !columns.empty() && !form.empty(); }
    /// The page of what the reports lack: the host's own, with no dialog behind it.
    bool isProgress() const { return form.empty(); }
};

/// All nodes, sorted by group.
std::span<const Node> nodes();
/// The page of what the reports lack. It is none of nodes(), but has a number like theirs.
const Node& progressNode();
/// Lookup by number, or by a dialog's name; nullptr if there is none.
const Node* nodeOf(Byte number);
const Node* nodeOf(StringView form);
/// Node of a table's list; nullptr if there is none.
const Node* nodeOfTable(StringView table);
/// Display name of a table; the table's own name where it has no other.
StringView nameOfTable(StringView table);

} // namespace zv::host
