#pragma once

#include "runtime/Value.h"

#include <span>

namespace zv::host {

/// A column of a node's list.
struct ListColumn {
    enum class Kind { text, number, flag, word, enciphered };
    StringView title;
    Kind kind = Kind::text;
    std::span<const StringView> words = {}; ///< For Kind::word: what 1, 2, … stand for.
};

/// A node of the host's tree: what the module knows by a number, a school by a name.
struct Node {
    Byte number = 0;
    StringView group;
    StringView name; ///< Of the whole list.
    StringView one;  ///< Of one of its rows, in small letters.
    StringView form; ///< The dialog behind it.
    StringView table = {};
    StringView key = {};
    /// Gives the rows: the key, then what the columns show. Empty: the node has no list and opens its dialog
    /// directly.
    StringView query = {};
    std::span<const ListColumn> columns = {};

    bool hasList() const { return !query.empty(); }
};

/// All nodes, those of a group one after the other.
std::span<const Node> nodes();
/// The node of a number, or of a dialog's name; nullptr if there is none.
const Node* nodeOf(Byte number);
const Node* nodeOf(StringView form);
/// What a school calls the rows of a table; the table's own name where it has no other.
StringView nameOfTable(StringView table);

} // namespace zv::host
