#pragma once

#include "data/Connection.h"
#include "progress/Definition.h"

#include <array>
#include <vector>

/// Reports on paper: what of a section is printed, and the templates that it is set in. No toolkit.
namespace zv::paper {

using progress::Kind;

/// Ratings of one area, in the order of the types of rating; "" where there is none.
struct Area {
    String name;
    std::array<String, 5> answers = {};
};

/// All that is stored of one pupil for one kind of report, each text in its own spelling; "" where nothing
/// or only blanks are.
struct Sheet {
    Long pupil = 0;
    int number = 0;      ///< Place in the section's list, from 1.
    bool left = false;   ///< Has left the school; the individual reports list him still.
    bool hidden = false; ///< The guidance's window does not show him.
    String fullName;     ///< As lists have it: "Surname Surname, Name".
    String firstSurname;
    String secondSurname;
    String name;
    String difficulties; ///< With both kinds of individual report.
    String assessment;
    String measures;
    std::array<String, 5> abilities = {}; ///< Of the secondary report.
    std::array<String, 5> procedures = {};
    std::array<String, 2> attitudes = {};
    std::vector<Area> areas = {};     ///< Of the primary report: those that the pupil takes.
    std::vector<String> answers = {}; ///< Of the guidance, in the order of its questions.
    std::vector<String> missing = {}; ///< What a family expects and is not there, in words.
};

/// A question, and what may be answered.
struct Question {
    String text;
    std::vector<String> answers = {}; ///< In the order of their keys.
};

/// A section with the sheets of its pupils, in the order of the windows' list.
struct SectionSheets {
    Kind kind = Kind::primary;
    String school; ///< "" where the database does not know it.
    String teaching;
    String course;
    String section;
    Long id = 0;
    bool hasNamesake = false; ///< Another section of the school has its name and its course's.
    String tutor;
    std::vector<Question> questions = {}; ///< The five types of rating, or the questions of the guidance.
    std::vector<Sheet> sheets = {};
};

/// Reads a section, by a number of statements that does not depend on the pupils: those whom the report's
/// window reads. Fails with a DataError where the database does, and with otherData where there is no such
/// section or its kind of teaching has no such report.
SectionSheets readSheets(Connection& centro, Kind kind, Long section);

} // namespace zv::paper
