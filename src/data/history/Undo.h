#pragma once

#include "data/history/HistoryConnection.h"

#include <functional>
#include <map>
#include <optional>

namespace zv::history {

/// What is to be undone: the entries that meet all that is given.
struct Scope {
    Long opening = 0; ///< Number of the opening's entry; 0 for any.
    Long save = 0;    ///< Number of the save's first entry; 0 for any.
    Long since = 0;   ///< Number of the first entry; 0 for the oldest.
    String table = {};
    String row = {};    ///< Condition as in Entry::row, or of the key's first columns.
    String column = {}; ///< Only this column of the rows that were changed.
};

/// A row as the undo finds it and as it will leave it.
struct Effect {
    enum class Act { setBack, remove, insert };
    Act act = Act::setBack;
    String table;
    String row;
    Fields from;       ///< Columns that differ, as they stand; of a row that goes all that the history knows.
    Fields to;         ///< The same columns as they will stand; of a row that comes all of them.
    bool alone = true; ///< No other row has its key.
};

/// Who wrote an entry, in which dialog, and when.
struct Author {
    Long entry = 0;     ///< Its number; 0 where the history does not know.
    String moment = {}; ///< UTC, as in Entry.
    Opening opening = {};
};

/// What stays as it is, and why.
struct Obstacle {
    enum class Why {
        writtenOver,   ///< The column holds something else than what the entry wrote.
        rowGone,       ///< The row is not there any more.
        rowThere,      ///< Another row has the key meanwhile.
        erased,        ///< The entry's texts were erased.
        notUnderstood, ///< A statement that the history kept as its text.
    };
    Why why = Why::writtenOver;
    Entry entry = {};
    String column = {}; ///< "" where the whole row is meant.
    Value stands = {};  ///< What the column holds.
    Author by = {};     ///< Who wrote over it.
};

struct Plan {
    std::vector<Effect> effects;
    std::vector<Obstacle> obstacles;
    std::map<Kind, Long> idle; ///< Entries that wrote nothing (read, failed, missed), by kind.
};

/// Works out what an undo would do to the tables as they stand, entry by entry from the newest. Changes
/// nothing. Fails with tableMissing where there is no history.
Plan planOf(HistoryConnection& centro, const Scope& scope);
/// Undoes it, as far as nothing stands over it, in one transaction under the lock of the history; gives what
/// was done and what was not. It is noted as an act of `by`, so that it can be undone in turn. `also` runs at
/// the end of the transaction.
Plan undo(HistoryConnection& centro, const Scope& scope, const Opening& by,
          const std::function<void()>& also = {});

/// Condition of the entries of a row, or of all whose key begins so, or of the whole table ("").
String ofRow(StringView table, StringView row);
/// Number of the first entry from that moment (UTC) on; 0 if there is none.
Long firstSince(Connection& centro, StringView moment);
/// What the last save that wrote the row, or the column of it, did to it; nullopt where none is known.
std::optional<Scope> lastWriteOf(Connection& centro, StringView table, StringView row,
                                 StringView column = {});
/// The opening with the number; an empty one for 0.
Opening openingOf(Connection& centro, Long number);

} // namespace zv::history
