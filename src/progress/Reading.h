#pragma once

#include "data/Connection.h"

#include <array>
#include <map>
#include <vector>

namespace zv::progress {

/// Text of the individual report: its column, its name for people, and whether the secondary report alone
/// has it. Texts of one name stand together in the dialog without names of their own.
struct TextPart {
    StringView column;
    StringView name;
    bool secondary = true;
};
inline constexpr StringView assessment = u"Valoración del aprendizaje y promoción";
inline constexpr StringView difficulties = u"Dificultades de asimilación en las distintas áreas";
inline constexpr StringView measures = u"Aplicación de medidas educativas";
inline constexpr StringView procedures = u"Utilización de Procedimientos";
inline constexpr StringView attitudes = u"Nuevas Actitudes";
inline constexpr std::array<TextPart, 15> textParts{{
    {u"Alumno1", u"Cognitivas-Intelectuales"},
    {u"Alumno2", u"Equilibrio Personal"},
    {u"Alumno3", u"Inserción Social"},
    {u"Alumno4", u"Motrices"},
    {u"Alumno5", u"Relación Interpersonal"},
    {u"Procedimiento1", procedures},
    {u"Procedimiento2", procedures},
    {u"Procedimiento3", procedures},
    {u"Procedimiento4", procedures},
    {u"Procedimiento5", procedures},
    {u"Actitud1", attitudes},
    {u"Actitud2", attitudes},
    {u"Dificultad", difficulties, false},
    {u"Valoracion", assessment, false},
    {u"Apreciacion", measures, false},
}};
inline constexpr std::size_t firstCommon = 12;

/// Tabs of ratings of the primary report; their place is the type's number.
inline constexpr std::array<StringView, 5> ratingTabs{
    u"Respecto al Propio Alumno", u"Respecto a los Objetivos", u"Integración de Conceptos",
    u"Utilización de Procedimientos", u"Nuevas Actitudes"};
inline constexpr std::size_t questions = 8;

/// Section with what decides which reports it has.
struct Section {
    Long id = 0;
    String name = {};
    String course = {};
    Long kind = 0; ///< Kind of teaching; 0 of a section without course.
    Long year = 0; ///< Of the course in its kind of teaching, from 1.
    bool endsCycle = false;
};

/// Answer of a catalogue. One without a text is none, on paper and for whoever reads it.
struct Answer {
    Long question = 0; ///< Question of the guidance or type of rating that lists it.
    String text;       ///< "" of blanks too.
};

/// Subject of a pupil with the answers to its types of rating: their keys, 0 for none.
struct Subject {
    Long id = 0;
    std::array<Long, ratingTabs.size()> answers = {};
};

/// Pupil of a section with what his reports hold.
struct Pupil {
    Long id = 0;
    Long section = 0;
    bool left = false;
    bool paired = false; ///< Stands in the table of pairs too, as the individual reports want it.
    String surname1, surname2, given;
    std::array<String, textParts.size()> texts;
    std::vector<Subject> subjects;            ///< Those that the primary report rates, by name.
    std::array<Long, questions> answers = {}; ///< To the guidance: their keys, 0 for none.
};

/// "Abad Arias, Pablo" in one line; "Alumno 55" of one without a name.
String nameOf(const Pupil& pupil);

/// What reports are made of, as the dialogs would show it.
struct Reading {
    std::map<Long, Section> sections;
    std::vector<Pupil> pupils; ///< In the dialogs' order.
    std::map<Long, String> subjects;
    std::array<String, questions> questionNames; ///< "La pregunta 3" of one without a text.
    std::array<String, ratingTabs.size()> ratingNames;
    std::map<Long, Answer> guidanceAnswers; ///< By key.
    std::map<Long, Answer> ratingAnswers;
    std::array<bool, questions> asked = {}; ///< The question has a possible answer.
    std::array<bool, ratingTabs.size()> rated = {};
};

struct Wanted {
    Long section = 0; ///< 0 for all.
    bool guidance = true;
    bool secondary = true;
    bool primary = true;
};

/// Reads each table once, whatever the number of pupils. Fails with a DataError where the database does.
Reading read(Connection& centro, const Wanted& wanted);

} // namespace zv::progress
