#pragma once

#include "care/joins/JoinPlan.h"
#include "data/history/Fields.h"

#include <functional>

namespace zv::care {

/// Joining of two rows of a list: what refers to the one that goes refers to the other afterwards, in all
/// columns and in both databases, and the one that goes is gone. The live database's part is one transaction.
/// The deleted-records one cannot share it (SQLite commits each file by itself), so it keeps a record of the
/// join, written before as begun: whichever moment a station dies at, settleJoins() sees by the live database
/// whether that transaction took place, and ends the other part or takes the record back.

/// A school, and who works on it.
struct Joiner {
    School& school;
    String url;      ///< Of the school: its engine is registered.
    Opening by = {}; ///< As what the history, the record and the registrations have it.
};

/// Changes nothing.
JoinPlan planOf(const Joiner& joiner, const Pair& pair);
/// Joins them, both registered meanwhile. Gives the number of the record, by which it is undone. Fails with a
/// RuntimeError that says why, and then nothing is changed.
Long join(const Joiner& joiner, const Pair& pair);

/// A join that can be undone.
struct Joined {
    Long number = 0;
    Pair pair;
    String goes;   ///< Name of the row that went.
    String moment; ///< UTC.
    String by;     ///< Name of the user.
};
/// The newest first. Other than join() and undoJoin() it does not settle anything.
std::vector<Joined> joins(const Joiner& joiner);
/// Parts them again: both databases are as they were, but for what somebody changed since in a row that was
/// moved. Gives the number of such rows. Fails, and changes nothing, where the key or a row is taken, or
/// there is no such join.
Long undoJoin(const Joiner& joiner, Long number);
/// Ends what a station that died had begun.
void settleJoins(const Joiner& joiner);

/// Two rows of a list that a person may take for one.
struct Alike {
    Pair pair; ///< The one that more rows refer to stays; the older one of two that are alike in that.
    String stays;
    String goes;
};
/// Deciphers a text that is stored enciphered; may fail.
using Deciphers = std::function<String(const Value& text)>;
/// The pairs of a node's list that look alike; with `only`, those of that row.
std::vector<Alike> lookAlikes(Connection& centro, const ModuleNode& node, const Deciphers& deciphers,
                              Long only = 0);

} // namespace zv::care
