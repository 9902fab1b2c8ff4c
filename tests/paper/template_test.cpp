#include "paper/Contents.h"

#include "data/DataError.h"

#include <gmock/gmock.h>

namespace zv::paper {

using testing::HasSubstr;

constexpr FieldName note[] = {{u"respuesta"}};
constexpr FieldName area[] = {{u"area"}, {u"notas", note}};
constexpr FieldName names[] = {{u"alumno"}, {u"medidas"}, {u"areas", area}};

TEST(TemplateTest, fills_texts_escaped_and_parts_once_for_each_or_not_at_all)
{
    const Fields fields{
        .texts = {{u"alumno", u"<b>&\"'\r\nb\u2028c\n\nd  e\u0001\xD83D"}, {u"medidas", u""}},
        .lists = {
            {u"areas",
             {{.texts = {{u"area", u"Uno"}},
               .lists = {{u"notas", {{.texts = {{u"respuesta", u"x"}}}, {.texts = {{u"respuesta", u""}}}}}}},
              {.texts = {{u"area", u"Dos"}}, .lists = {{u"notas", {}}}}}}}};
    const std::tuple<const char*, StringView, std::string> cases[] = {
        {"text", u"{{alumno}}",
         "<span style=\"white-space:pre-wrap\">&lt;b&gt;&amp;&quot;&#39;<br/>b<br/>c<br/><br/>d  e��</span>"},
        {"in a tag it has no tags", u"<td title=\"{{alumno}}\">",
         "<td title=\"&lt;b&gt;&amp;&quot;&#39; b c  d  e��\">"},
        {"empty", u"a{{#medidas}}no{{/medidas}}{{^medidas}}sí{{/medidas}}{{#alumno}}1{{/alumno}}", "así1"},
        {"lists in lists, and what is around them",
         u"<{{#areas}}{{area}}:{{#notas}}[{{respuesta}}{{^respuesta}}—{{/respuesta}}{{area}}]{{/notas}};{{/"
         u"areas}}>",
         "<Uno:[xUno][—Uno];Dos:;>"},
    };
    for (const auto& [what, page, filled] : cases)
        EXPECT_EQ(toUtf8(Template(u"f", page, names).fill(fields)), filled) << what;
}

TEST(TemplateTest, a_wrong_template_says_file_line_and_field)
{
    const std::pair<StringView, const char*> cases[] = {
        {u"\n{{alumna}}",
         "La plantilla casa.html está mal, línea 2: no hay ningún campo «alumna» aquí. Los que "
         "hay: alumno, medidas, areas."},
        {u"\n\n{{#areas}}{{notas}}{{/areas}}", "línea 3: «notas» es una lista"},
        {u"{{respuesta}}", "línea 1: no hay ningún campo «respuesta» aquí"},
        {u"{{#areas}}\n{{alumno}}{{respuesta}}{{/areas}}",
         "Los que hay: area, notas, alumno, medidas, areas."},
        {u"\n{{#medidas}}\n\n", "línea 2: la parte «medidas» no se cierra: falta {{/medidas}}."},
        {u"{{#areas}}\n{{/medidas}}", "línea 2: aquí no se puede cerrar «medidas»: está abierta «areas»."},
        {u"{{/medidas}}", "línea 1: aquí no se puede cerrar «medidas»."},
        {u"a\nb {{alumno", "línea 2: el campo que empieza con {{ no se cierra con }}."},
    };
    for (const auto& [page, message] : cases)
        try {
            const Template parsed(u"casa.html", page, names);
            ADD_FAILURE() << toUtf8(page);
        } catch (const RuntimeError& error) {
            EXPECT_THAT(error.what(), HasSubstr(message));
        }
}

TEST(ContentsTest, school_years_days_and_names_of_files)
{
    using namespace std::chrono;
    EXPECT_EQ(toUtf8(schoolYear(2026y / 8 / 31)), "2025/2026");
    EXPECT_EQ(toUtf8(schoolYear(2026y / 9 / 1)), "2026/2027");
    EXPECT_EQ(toUtf8(dayInWords(2027y / 1 / 6)), "6 de enero de 2027");

    SectionSheets section{.kind = Kind::secondary,
                          .school = {},
                          .teaching = {},
                          .course = {},
                          .section = u"1º A/B",
                          .tutor = {}};
    section.sheets.resize(100);
    const std::tuple<int, String, const char*> cases[] = {
        {7, u"Ñíguez", "eso 1º A-B 007 Ñíguez"},
        {100, u"a\\b:c*?\"<>|d\r\n\u202Egpj.", "eso 1º A-B 100 a-b-c------d--gpj"},
        {1, String(1, char16_t{0xD83D}) + u" \U0001F600", "eso 1º A-B 001 - 😀"},
        {1, String(300, u'W'), nullptr},
    };
    for (const auto& [number, surname, name] : cases) {
        section.sheets[0].number = number;
        section.sheets[0].fullName = surname;
        const std::string made = toUtf8(fileName(section, section.sheets[0]));
        if (name == nullptr)
            EXPECT_LT(made.size(), 200u);
        else
            EXPECT_EQ(made, name);
    }
}

} // namespace zv::paper
