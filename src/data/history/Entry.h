#pragma once

#include "runtime/Value.h"

namespace zv::history {

/// What an entry of the history says.
enum class Kind : Integer {
    opened = 1,  ///< A dialog was opened by a person; `after` says which, whose and where (see Opening).
    added = 2,   ///< A row came into being; `after` has its columns.
    changed = 3, ///< Columns of a row; `before` and `after` have those that differ.
    removed = 4, ///< A row went; `before` has its columns.
    read = 5,    ///< Texts of a row were read that are kept enciphered; `row` is empty for a whole list.
    failed = 6,  ///< A statement failed; `before` has number and words, `after` what it would have written.
    missed = 7,  ///< An update found no row; `after` has what it would have written.
    opaque = 8,  ///< A statement that is not understood was run; `after` has its text.
    ended = 9,   ///< A save of several statements came to its end.
    erased = 10  ///< Texts of earlier entries were erased; `table` and `row` say whose, "" for a limit of age
                 ///< in `after`.
};

/// Whether the entry tells of a row that is otherwise than before.
constexpr bool wroteRow(Kind kind)
{
    return kind == Kind::added || kind == Kind::changed || kind == Kind::removed;
}

/// Entry of the history: a row of its table, immutable but for an erasure, which empties `before`, `after`
/// and `salt`.
struct Entry {
    Long number = 0;    ///< From 1, without gaps.
    String moment = {}; ///< UTC, "2024-09-12 08:30:00.125".
    Kind kind = Kind::opened;
    Long opening = 0; ///< Number of the entry that opened the dialog; 0 outside of any.
    Long save = 0;    ///< Number of the first entry of the save that it belongs to; 0 for none.
    String table = {};
    String row = {};    ///< Condition that finds the row by its key: "IDBanco=7".
    String before = {}; ///< Columns, as textOf() writes them.
    String after = {};
    String salt = {};
    String digest = {}; ///< Of salt, `before` and `after`: it outlives their erasure.
    String link = {};   ///< Of the entry before, and all that is never erased of this one: the chain.
};

} // namespace zv::history
