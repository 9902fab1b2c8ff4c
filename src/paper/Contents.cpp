#include "paper/Contents.h"

#include "progress/Reading.h"
#include "runtime/Convert.h"

#include <algorithm>

namespace zv::paper {
namespace {

constexpr std::array<StringView, 12> months = {u"enero",      u"febrero", u"marzo",     u"abril",
                                               u"mayo",       u"junio",   u"julio",     u"agosto",
                                               u"septiembre", u"octubre", u"noviembre", u"diciembre"};
/// Parts of a file's name in bytes of UTF-8, so that all of them stay below the 255 of file systems.
constexpr std::size_t longestLabel = 60;
constexpr std::size_t longestName = 100;

constexpr FieldName text[] = {{u"titulo"}, {u"texto"}};
constexpr FieldName part[] = {{u"parte"}, {u"textos", text}};
constexpr FieldName question[] = {{u"pregunta"}, {u"respuesta"}};
constexpr FieldName type[] = {{u"tipo"}};
constexpr FieldName key[] = {{u"tipo"}, {u"respuestas"}};
constexpr FieldName answer[] = {{u"respuesta"}};
constexpr FieldName area[] = {{u"area"}, {u"notas", answer}};
constexpr FieldName ratings[] = {{u"columnas"}, {u"clave", key}, {u"tipos", type}, {u"areas", area}};

constexpr FieldName common[] = {{u"centro"}, {u"logo"},    {u"alumno"}, {u"nombre"},    {u"apellidos"},
                                {u"numero"}, {u"seccion"}, {u"curso"},  {u"ensenanza"}, {u"curso_escolar"},
                                {u"fecha"},  {u"tutor"},   {u"falta"}};

template <std::size_t Own>
constexpr auto withCommon(const FieldName (&own)[Own])
{
    std::array<FieldName, std::size(common) + Own> all;
    std::ranges::copy(own, std::ranges::copy(common, all.begin()).out);
    return all;
}

constexpr FieldName ofPrimary[] = {
    {u"valoracion"}, {u"dificultades"}, {u"medidas"}, {u"valoraciones", ratings}};
constexpr FieldName ofSecondary[] = {{u"valoracion"}, {u"dificultades"}, {u"medidas"}, {u"partes", part}};
constexpr FieldName ofGuidance[] = {{u"preguntas", question}};
constexpr auto primary = withCommon(ofPrimary);
constexpr auto secondary = withCommon(ofSecondary);
constexpr auto guidance = withCommon(ofGuidance);

bool hasAnswer(const Area& each)
{
    return std::ranges::any_of(each.answers, [](const String& found) { return !found.empty(); });
}

std::vector<Fields> ratingsOf(const SectionSheets& section, const Sheet& sheet)
{
    if (std::ranges::none_of(sheet.areas, hasAnswer))
        return {};
    Fields table;
    std::vector<std::size_t> used;
    for (std::size_t place = 0; place < section.questions.size(); ++place) {
        if (std::ranges::all_of(sheet.areas,
                                [&](const Area& each) { return each.answers.at(place).empty(); }))
            continue;
        used.push_back(place);
        const Question& each = section.questions[place];
        table.lists[u"tipos"].push_back({.texts = {{u"tipo", each.text}}});
        String scale;
        for (const String& possible : each.answers)
            scale += (scale.empty() ? u"" : u" · ") + possible;
        table.lists[u"clave"].push_back({.texts = {{u"tipo", each.text}, {u"respuestas", scale}}});
    }
    table.texts[u"columnas"] = decimalText(static_cast<std::int64_t>(used.size()) + 1);
    for (const Area& each : sheet.areas) {
        if (!hasAnswer(each))
            continue;
        Fields row{.texts = {{u"area", each.name}}};
        for (const std::size_t place : used)
            row.lists[u"notas"].push_back({.texts = {{u"respuesta", each.answers.at(place)}}});
        table.lists[u"areas"].push_back(std::move(row));
    }
    return {std::move(table)};
}

/// The texts of the secondary report by tab, those of the first each with its name.
std::vector<Fields> partsOf(const Sheet& sheet)
{
    std::vector<Fields> result;
    const auto add = [&](StringView name, std::span<const String> texts, bool named) {
        Fields one{.texts = {{u"parte", String(name)}}};
        for (std::size_t place = 0; place < texts.size(); ++place)
            if (!texts[place].empty())
                one.lists[u"textos"].push_back(
                    {.texts = {{u"titulo", named ? String(progress::textParts.at(place).name) : String()},
                               {u"texto", texts[place]}}});
        if (!one.lists.empty())
            result.push_back(std::move(one));
    };
    add(progress::ratingTabs.front(), sheet.abilities, true);
    add(progress::procedures, sheet.procedures, false);
    add(progress::attitudes, sheet.attitudes, false);
    return result;
}

std::vector<Fields> answersOf(const SectionSheets& section, const Sheet& sheet)
{
    std::vector<Fields> result;
    for (std::size_t place = 0; place < sheet.answers.size(); ++place)
        if (!sheet.answers[place].empty())
            result.push_back({.texts = {{u"pregunta", section.questions.at(place).text},
                                        {u"respuesta", sheet.answers[place]}}});
    return result;
}

/// What every file system takes as part of a name. Marks that turn the direction of writing go: they would
/// let a name look like another.
String safe(StringView name, std::size_t longest)
{
    constexpr std::u32string_view forbidden = U"<>:\"/\\|?*";
    String result;
    for (const char32_t each : codePoints(Trim(name))) {
        const std::size_t bytes = each < 0x80 ? 1 : each < 0x800 ? 2 : each < 0x10000 ? 3 : 4;
        if (bytes > longest)
            break;
        longest -= bytes;
        const bool turns = (each >= 0x200E && each <= 0x200F) || (each >= 0x202A && each <= 0x202E) ||
                           (each >= 0x2066 && each <= 0x2069);
        if (turns)
            continue;
        if (!isPrintable(each) || each == 0x2028 || each == 0x2029 ||
            forbidden.find(each) != std::u32string_view::npos)
            result += u'-';
        else if (each > 0xFFFF) {
            result += static_cast<char16_t>(0xD7C0 + (each >> 10));
            result += static_cast<char16_t>(0xDC00 + (each & 0x3FF));
        } else
            result += static_cast<char16_t>(each);
    }
    result = Trim(result);
    while (!result.empty() && result.back() == u'.')
        result.pop_back();
    return result;
}

} // namespace

std::span<const FieldName> fieldNames(Kind kind)
{
    return kind == Kind::primary     ? std::span<const FieldName>(primary)
           : kind == Kind::secondary ? std::span<const FieldName>(secondary)
                                     : std::span<const FieldName>(guidance);
}

Fields fieldsOf(const SectionSheets& section, const Sheet& sheet, const Heading& heading, StringView missing)
{
    Fields fields{.texts = {{u"centro", heading.school.empty() ? section.school : heading.school},
                            {u"logo", heading.logo ? u"sí" : u""},
                            {u"alumno", sheet.fullName},
                            {u"nombre", sheet.name},
                            {u"apellidos", Trim(sheet.firstSurname + u" " + sheet.secondSurname)},
                            {u"numero", decimalText(sheet.number)},
                            {u"seccion", section.section},
                            {u"curso", section.course},
                            {u"ensenanza", section.teaching},
                            {u"curso_escolar", schoolYear(heading.day)},
                            {u"fecha", dayInWords(heading.day)},
                            {u"tutor", section.tutor},
                            {u"falta", String(missing)},
                            {u"valoracion", sheet.assessment},
                            {u"dificultades", sheet.difficulties},
                            {u"medidas", sheet.measures}}};
    fields.lists[u"valoraciones"] = ratingsOf(section, sheet);
    fields.lists[u"partes"] = partsOf(sheet);
    fields.lists[u"preguntas"] = answersOf(section, sheet);
    return fields;
}

void forEachText(const Fields& fields, const std::function<void(StringView)>& use)
{
    for (const auto& [name, each] : fields.texts)
        use(each);
    for (const auto& [name, list] : fields.lists)
        for (const Fields& each : list)
            forEachText(each, use);
}

String schoolYear(Day day)
{
    const int begun = static_cast<int>(day.year()) - (day.month() < std::chrono::September ? 1 : 0);
    return decimalText(begun) + u"/" + decimalText(begun + 1);
}

String dayInWords(Day day)
{
    return decimalText(static_cast<unsigned>(day.day())) + u" de " +
           String(months.at(static_cast<unsigned>(day.month()) - 1)) + u" de " +
           decimalText(static_cast<int>(day.year()));
}

String fileName(const SectionSheets& section)
{
    // Kinds of teaching have sections of the same name.
    const String course = safe(section.course, longestLabel);
    return String(progress::wordOf(section.kind)) + (course.empty() ? u"" : u" ") + course + u" " +
           safe(section.section, longestLabel) +
           (section.hasNamesake ? u" (" + decimalText(section.id) + u")" : u"");
}

String fileName(const SectionSheets& section, const Sheet& sheet)
{
    const String most =
        decimalText(std::max<std::int64_t>(10, static_cast<std::int64_t>(section.sheets.size())));
    const String number = decimalText(sheet.number);
    return fileName(section) + u" " + String(most.size() - std::min(most.size(), number.size()), u'0') +
           number + u" " + safe(sheet.fullName, longestName);
}

} // namespace zv::paper
