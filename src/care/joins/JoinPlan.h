#pragma once

#include "care/joins/JoinMoves.h"
#include "suite/Registrations.h"

namespace zv::care {

/// What a join would do.
struct JoinPlan {
    String stays; ///< Their names; of an enciphered one its number.
    String goes;
    std::vector<Referrer> moves; ///< What refers to the row that goes.
    Long merged = 0;      ///< How many of these stand beside the other row already, in a table of pairs: of
                          ///< two that are alike in all columns one is left.
    history::Fields lost; ///< What the row that goes says and the other does not; the record keeps it.
    /// What is to be known before and hinders nothing, Spanish, a sentence each.
    std::vector<String> warnings;
    std::vector<String> obstacles; ///< Why it may not be done, Spanish, a sentence each; empty if it may.
};

/// Who has a row open, from the table of registrations: "el usuario 3, en el puesto aula".
String heldBy(const Registration& registration);
/// Adds that the two rows answer to different questions.
void addKind(JoinPlan& plan, const Pair& pair, const history::Fields& stays, const history::Fields& goes);
/// Adds that two banks are not the same one, and which branches would stand twice under one.
void addBanks(JoinPlan& plan, Connection& centro, const Pair& pair, const history::Fields& stays,
              const history::Fields& goes);
/// Adds who has one of the rows open, and who can put the one that goes back: a dialog saves what it read
/// when it was opened.
void addOpen(JoinPlan& plan, Connection& centro, const Pair& pair, const std::vector<Move>& moves);

} // namespace zv::care
