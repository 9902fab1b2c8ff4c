#pragma once

#include "zvconf/CentrosLista.h"

#include <chrono>
#include <span>

namespace zv::zvconf {

/// What became of a school.
struct Outcome {
    enum class Result { notDone, well, faulty, failed, died };
    Result result = Result::notDone;
    String text; ///< What the command said of it, in lines.
    std::chrono::milliseconds took{0};
    bool away = false;       ///< Its server did not answer.
    bool withoutKey = false; ///< Of a copy: it lacks the key of the illnesses.
};

/// What was done with the schools of a list, an outcome for each.
struct Round {
    StringView command; ///< As it is typed: "comprobar".
    String again;       ///< The whole command without the program's name, to be given for one school.
    std::chrono::minutes longest; ///< For one school.
    const std::vector<ListedSchool>& schools;
    std::vector<Outcome> outcomes;
};

/// One line for a person: "28001: bien (1,2 s)", and what is wrong, if anything is.
String lineOf(const ListedSchool& school, const Outcome& outcome);
/// How many came out how.
String countsOf(std::span<const Outcome> outcomes);
/// Prints what is not well once more, in the order of the list, with what to do, and the counts.
void printReport(const Round& round);
/// Whole report for another program: a school a line, without passwords. As the command line's other lists.
String csvOf(const Round& round);
String jsonOf(const Round& round);

} // namespace zv::zvconf
