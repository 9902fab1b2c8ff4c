#pragma once

#include "data/history/HistoryConnection.h"
#include "data/history/Rows.h"
#include "data/history/Undo.h"

#include <optional>

namespace zv::history {

/// Something that somebody wrote, in one row of a table, and that is gone since a dialog saved.
struct Loss {
    enum class Kind {
        writtenOver, ///< Another opening wrote it after the dialog had read the row.
        replaced,    ///< The dialog was to make a new row, and wrote over this one.
        nowhere,     ///< What was typed met no row.
        removed,     ///< The row went, though nobody chose to delete it.
        failed       ///< A section's statement failed, and the dialog went on or gave up.
    };
    Kind kind = Kind::writtenOver;
    String table = {};
    String row = {};    ///< Condition that finds the row.
    Fields was = {};    ///< What is lost; only fields with something in them.
    Fields is = {};     ///< What the dialog left in their place; empty where there is no row.
    Fields whole = {};  ///< The row to be made where there is none, with all of its columns that are known.
    Author author = {}; ///< Of `was`; of what was typed, the person himself.
    Long pupil = 0;     ///< Key of the pupil that the row belongs to; 0 for none.
    bool left = false;  ///< The pupil is not in the section any more.
    bool anew = false;  ///< It was to be a row of its own.
};

/// The row that a condition finds, with the columns that the schema knows; nullopt for none.
std::optional<Fields> rowNow(Connection& centro, const schema::Table& table, StringView condition);
/// The columns of a condition like "CodAlumno=3 AND codMateria=7"; nullopt for any other.
std::optional<Fields> fieldsOfCondition(StringView condition);
/// What a dialog that has closed lost; empty where it lost nothing. The history alone is read, and the rows
/// themselves only for what was lost.
std::vector<Loss> lossesOf(Connection& centro, const HistoryConnection::Closed& closed);

/// How many of a section's rows stand as the dialog was to save them, and why not all do.
struct SavedShare {
    Long saved = 0;
    Long tried = 0; ///< 0 where the dialog gave up at the first failure, so that nobody knows how many.
    String why;     ///< The words of the last failure.
};
SavedShare savedShare(const HistoryConnection::Closed& closed, const std::vector<Loss>& losses);

/// How many fields came back, and how many were left because something newer stands there.
struct GivenBack {
    Long back = 0;
    Long newer = 0;
};
/// Puts back what was lost, in one transaction, through the history. Fails with a RuntimeError, and changes
/// nothing, if a statement fails.
GivenBack giveBack(Connection& centro, const std::vector<Loss>& losses);

} // namespace zv::history
