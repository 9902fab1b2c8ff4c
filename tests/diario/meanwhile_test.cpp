#include "diario/Dialogs.h"

#include "session/cConstCol.h"

#include <functional>
#include <utility>

namespace zv::journal {
namespace {

/// What was done in a dialog whose program then died, what others did to the school, and what recovery may
/// make of it.
struct Meanwhile {
    std::vector<std::string> acts; ///< The first one opens the dialog.
    std::vector<StringView> others;
    const char* control;
    const char* shows;
};

const std::string second = "pestana mstBanco 2";
const std::vector<std::string> removesByKeys = {"abrir 30 2 2",           second,
                                                "celda msgBanco 1 0",     "tecla msgBanco ABA",
                                                "teclear msgBanco \" \"", "pulsar cmdBotonera(4)"};
constexpr StringView between =
    u"INSERT INTO Sucursal (IDSucursal,CodBanco,Codigo,Nombre,Direccion,Poblacion) "
    u"VALUES (10,2,'0999','Nueva','','')";

const Meanwhile cases[] = {
    // The row below the one that was clicked is another now.
    {removesByKeys,
     {u"UPDATE Sucursal SET IDSucursal=20 WHERE IDSucursal=4", between},
     "frmBanco.msgBanco",
     "0999|Nueva"},
    // The row that was taken out is called otherwise: nobody said that of this one.
    {removesByKeys, {u"UPDATE Sucursal SET Nombre='Otra' WHERE IDSucursal=4"}, "frmBanco.msgBanco", "Otra"},
    // Enter in the list accepts: it did nothing while the name was missing.
    {{"abrir 30 2 1", "escribir txtBanco(1) \"\"", second, "celda msgBanco 1 0", "tecla msgBanco ENTER",
      "pestana mstBanco 1", "escribir txtBanco(1) \"Mío\""},
     {u"UPDATE Banco SET Nombre='Suyo' WHERE IDBanco=1"},
     "frmBanco.txtBanco(1)",
     "0 Suyo"},
    // Another option of the group.
    {{"abrir 53 2 1", "pulsar optNocturno"},
     {u"UPDATE Turno SET tipoturno=2 WHERE IDTurno=1"},
     "frmTurno.optVespertino",
     "1 "},
    {{"abrir 53 2 1", "pulsar optNocturno"}, {}, "frmTurno.optNocturno", "1 "},
};

TEST_F(Recorded, what_others_did_meanwhile_is_neither_changed_nor_accepted)
{
    for (const Meanwhile& each : cases) {
        SCOPED_TRACE(each.acts.back() + " " + each.shows);
        forget();
        const FreshSchool fresh(u"sqlite:", true);
        std::size_t done = 0;
        playOn(fresh.school(), [&](Play&) { return done < each.acts.size() ? each.acts[done++] : ""; });
        for (const StringView sql : each.others)
            fresh.school().centro->executeNative(sql);
        bool opened = false;
        playOn(fresh.school(), [&](Play& play) -> std::string {
            if (Form* form = play.openForm(); form != nullptr) {
                const std::vector<Found> found = draftsFor(*recorder().opening(*form), folder);
                EXPECT_EQ(found.size(), 1);
                Recovery(*form, play.person(), found.at(0).draft).run();
                EXPECT_TRUE(form->Visible()) << "nothing accepts";
                EXPECT_THAT(seenIn(*form).at(each.control), testing::HasSubstr(each.shows));
            }
            return std::exchange(opened, true) ? "" : each.acts.front();
        });
    }
}

/// A section in which nobody was yet.
TEST_F(Recorded, what_was_typed_for_nobody_is_not_given_to_the_first_who_comes)
{
    const FreshSchool fresh(u"sqlite:", true);
    const std::vector<std::string> acts = {
        "abrir 130 1 0", "elegir cboTipoEnsenanza \"Educación Secundaria Obligatoria\"",
        "elegir cboCursos \"1º de ESO\"", "elegir cboSecciones \"1º A\"", "pulsar cmdNotaManual1(0)"};
    const auto in = [&](const std::function<void(Form&, Person&)>& then) {
        std::size_t done = 0;
        playOn(fresh.school(), [&](Play& play) -> std::string {
            if (play.openForm() != nullptr && play.openForm()->Name() == u"frmInfIndESO") {
                then(*play.openForm(), play.person());
                return "";
            }
            return done < acts.size() ? acts[done++] : "";
        });
    };
    String section;
    in([&](Form& form, Person&) {
        section = decimalText(recorder().opening(form)->section.number);
        EXPECT_EQ(recorder().opening(form)->section.text, u"1º A");
    });
    EXPECT_TRUE(journalFiles(folder).empty()) << "who only chose a section has nothing to lose";
    const auto move = [&](const String& from, const String& to) {
        for (const StringView table : {u"Alumno", u"Seccion_Alumno"})
            fresh.school().centro->executeNative(u"UPDATE " + String(table) + u" SET codSeccion=" + to +
                                                 u" WHERE codSeccion=" + from);
    };
    move(section, u"-1");
    in([&](Form& form, Person& person) {
        EXPECT_TRUE(person.type(*form.find(u"txtCognitiva"), u"De nadie"));
    });
    move(u"-1", section);
    in([&](Form& form, Person& person) {
        Found found = draftsFor(*recorder().opening(form), folder).at(0);
        const std::vector<Item> left = Recovery::left(Recovery(form, person, found.draft).run());
        ASSERT_EQ(left.size(), 1);
        EXPECT_EQ(left[0].fate, Fate::noPlace);
        EXPECT_EQ(seenIn(form).at("frmInfIndESO.txtCognitiva").find("De nadie"), std::string::npos);
        const auto before = found.path;
        keepOnly(found, left);
        EXPECT_FALSE(exists(before));
        EXPECT_EQ(found.draft.texts(), 1);
        discard(found.path);
        EXPECT_TRUE(draftsFor(*recorder().opening(form), folder).empty()) << "what is thrown away is gone";
    });
}

TEST(Opening, is_told_from_those_of_other_schools_persons_and_rows)
{
    const Opening here{.school = u"7 IES Sur sqlite:/a.db",
                       .schoolName = u"IES Sur",
                       .person = 3,
                       .dialog = u"frmPais",
                       .row = 5,
                       .action = cConstCol::Modificado};
    const auto other = [&](StringView school, StringView name, Integer person, Long row) {
        Opening opening = here;
        opening.school = String(school);
        opening.schoolName = String(name);
        opening.person = person;
        opening.row = row;
        return std::pair(here.sameAs(opening), here.elsewhere(opening));
    };
    EXPECT_EQ(here.origin(), u"sqlite:/a.db");
    EXPECT_EQ(other(here.school, u"IES Sur", 3, 5), std::pair(true, false));
    EXPECT_EQ(other(u"7 IES Sur odbc:DSN=sur", u"IES Sur", 3, 5), std::pair(false, true)) << "moved";
    EXPECT_EQ(other(u"8 IES Sur sqlite:/a.db", u"IES Sur", 3, 5), std::pair(false, false));
    EXPECT_EQ(other(u"7 IES Norte sqlite:/a.db", u"IES Norte", 3, 5), std::pair(false, false));
    EXPECT_EQ(other(u"7 IES Sur odbc:DSN=sur", u"IES Sur", 4, 5), std::pair(false, false));
    EXPECT_EQ(other(here.school, u"IES Sur", 3, 6), std::pair(false, false));
    Opening fresh = here;
    fresh.action = cConstCol::NUEVO;
    Opening another = fresh;
    another.row = 6;
    EXPECT_TRUE(fresh.sameAs(another))
        << "the row that was chosen in the host's list says nothing of a new one";
}

} // namespace
} // namespace zv::journal
