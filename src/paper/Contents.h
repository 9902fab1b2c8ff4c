#pragma once

#include "paper/Sheet.h"
#include "paper/Template.h"

#include <chrono>
#include <functional>

namespace zv::paper {

using Day = std::chrono::year_month_day;

/// What stands on a report beside what is stored of its pupil.
struct Heading {
    String school;     ///< "" for the name that the database has.
    bool logo = false; ///< There is a picture.
    Day day;
};

/// The fields that a template of the kind may use.
std::span<const FieldName> fieldNames(Kind kind);
/// What a sheet fills them with. Rows and columns without an answer are left out. `missing` says what makes
/// it a draft; "" if nothing does.
Fields fieldsOf(const SectionSheets& section, const Sheet& sheet, const Heading& heading, StringView missing);
void forEachText(const Fields& fields, const std::function<void(StringView)>& use);

/// "2026/2027": a school year begins with September.
String schoolYear(Day day);
/// "26 de noviembre de 2026".
String dayInWords(Day day);

/// Name of a file, without its suffix: kind, section, and the pupil's number and name. Fit for any file
/// system.
String fileName(const SectionSheets& section);
String fileName(const SectionSheets& section, const Sheet& sheet);

} // namespace zv::paper
