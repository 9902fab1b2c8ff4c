#include "diario/Dialogs.h"

#include "data/Statement.h"
#include "forms/TabStrip.h"
#include "runtime/Convert.h"

#include <iostream>
#include <random>
#include <set>

namespace zv::journal {
namespace {

/// A field of a pupil: his number, the control or "page/subject", by name.
using Field = std::pair<Long, std::string>;
/// What the section's dialog shows of each pupil, by number; his text as the list has it.
struct Shown {
    std::map<Long, String> pupils;
    std::map<Field, Content> fields;
    std::map<std::string, std::set<Entry>> choices; ///< Of the lists, and "page" of ratings.
    bool operator==(const Shown&) const = default;
};

String bare(StringView answer)
{
    const std::size_t blank = answer.find_first_not_of(u"0123456789");
    const String text(answer.substr(std::min(blank, answer.size())));
    return Trim(text);
}

class Section : public Recorded, public testing::WithParamInterface<int> {
protected:
    Section()
    {
        forms = {u"frmInfIndESO", u"frmInfIndPrim", u"frmConsejoOrientador"};
        opening = {
            "abrir 130 1 0\nelegir cboTipoEnsenanza \"Educación Secundaria Obligatoria\"\n"
            "elegir cboCursos \"1º de ESO\"\nelegir cboSecciones \"1º A\"\npulsar cmdNotaManual1(0)\n",
            "abrir 130 1 0\nelegir cboTipoEnsenanza \"Educación Primaria\"\n"
            "elegir cboCursos \"2º de Primaria\"\nelegir cboSecciones \"2º A\"\npulsar cmdNotaManual1(0)\n",
            "abrir 122 1 0\nelegir cboTipoEnsenanza \"Educación Secundaria Obligatoria\"\n"
            "elegir cboCursos \"2º de ESO\"\nelegir cboSecciones \"2º A\"\npulsar cmdNotaManual1(0)\n"};
    }
    int below(int count) { return static_cast<int>(chance() % static_cast<unsigned>(count)); }
    void sql(StringView pattern, const std::vector<Value>& values)
    {
        fresh->school().centro->executeNative(statement(pattern, values));
    }

    /// Opens the section's dialog as a tutor does, and leaves it as a dying program does.
    void inDialog(int kind, const std::function<void(Form&, Person&)>& then)
    {
        std::vector<GuionCommand> commands = readGuion(opening[static_cast<std::size_t>(kind)]).commands;
        std::size_t done = 0;
        Guion guion;
        Play play(guion, fresh->school(), scriptedStage);
        play.writeOn([&] {
            if (done < commands.size())
                guion.commands.push_back(commands[done++]);
            else if (play.openForm() != nullptr &&
                     play.openForm()->Name() == forms[static_cast<std::size_t>(kind)])
                then(*play.openForm(), play.person());
        });
        try {
            play.run();
        } catch (const GuionError&) {
            // It ends with the dialog open.
        }
    }
    static std::vector<Place> fieldsOf(const SectionControls& controls)
    {
        std::vector<Place> fields;
        for (const Control* control : controls.fields)
            fields.push_back({.control = control->Name(), .index = control->Index()});
        return fields;
    }

    /// All that the dialog shows, pupil by pupil and page by page.
    static Shown look(Form& form, Person& person)
    {
        Shown shown;
        const SectionControls controls(form);
        for (Long at = 0; at < controls.pupils->ListCount(); ++at) {
            person.choose(*controls.pupils, at);
            const Long pupil = controls.pupils->ItemData(at);
            shown.pupils[pupil] = controls.pupils->List(at);
            for (const Control* field : controls.fields) {
                shown.fields[{pupil, toUtf8(field->fullName())}] = contentOf(*field);
                if (const auto* list = dynamic_cast<const ComboBox*>(field))
                    for (Long entry = 0; entry < list->ListCount(); ++entry)
                        shown.choices[toUtf8(field->fullName())].insert(entryOf(*list, entry));
            }
            for (int page = 1; controls.floating != nullptr && page <= controls.gridPages; ++page) {
                person.clickTab(*controls.strip, page);
                for (Long entry = 0; entry < controls.floating->ListCount(); ++entry)
                    shown.choices[std::to_string(page)].insert(entryOf(*controls.floating, entry));
                for (Long row = 1; row < controls.grid->Rows(); ++row)
                    shown.fields[{pupil, ratingName(page, rowOf(*controls.grid, row))}].value.text =
                        bare(controls.grid->TextMatrix(row, 1));
            }
        }
        return shown;
    }
    static std::string ratingName(int page, const Entry& subject)
    {
        return std::to_string(page) + "/" + std::to_string(subject.number) + toUtf8(subject.text);
    }

    /// Types and rates at random, all over the section.
    void work(Form& form, Person& person)
    {
        const SectionControls controls(form);
        for (int act = 0; act < 25 && controls.pupils->ListCount() > 0; ++act) {
            if (below(3) == 0)
                person.choose(*controls.pupils, below(static_cast<int>(controls.pupils->ListCount())));
            if (controls.strip != nullptr)
                person.clickTab(*controls.strip, 1 + below(static_cast<int>(controls.strip->tabCount())));
            if (controls.floating != nullptr && controls.grid->Visible() && controls.grid->Rows() > 1) {
                person.clickCell(*controls.grid, 1 + below(static_cast<int>(controls.grid->Rows()) - 1), 1);
                if (controls.ratingOpen())
                    person.choose(*controls.floating,
                                  below(static_cast<int>(controls.floating->ListCount())));
                continue;
            }
            Control* field =
                controls.fields[static_cast<std::size_t>(below(static_cast<int>(controls.fields.size())))];
            if (auto* box = dynamic_cast<TextBox*>(field)) {
                person.select(*box, 0, below(2) * static_cast<Long>(box->Text().size()));
                person.type(*box, decimalText(controls.pupil()) + u"'" + decimalText(below(1000)) + u" ");
            } else if (auto* list = dynamic_cast<ComboBox*>(field)) {
                person.choose(*list, below(static_cast<int>(list->ListCount())));
            }
        }
    }

    /// What others do meanwhile.
    void meddle()
    {
        const Value pupil = present.empty() || below(4) == 0
                                ? 280 + below(120)
                                : present[static_cast<std::size_t>(below(static_cast<int>(present.size())))];
        const Value word = u"otro " + decimalText(below(1000));
        switch (below(9)) {
        case 0: // In and out of a section.
            sql(u"UPDATE Alumno SET codSeccion=(SELECT MAX(codSeccion) FROM Alumno) WHERE IDAlumno={}",
                {pupil});
            break;
        case 1:
            sql(u"UPDATE Alumno SET codSeccion=(SELECT MIN(codSeccion) FROM Alumno WHERE codSeccion>={}) "
                u"WHERE IDAlumno={}",
                {13 + below(3), pupil});
            break;
        case 2: // Another name, and so another place in the list.
            sql(u"UPDATE Alumno SET Apellido_1='{}' WHERE IDAlumno={}", {word, pupil});
            break;
        case 3:
            sql(u"UPDATE Alumno_InfInd SET Dificultad='{}',Valoracion='{}' WHERE codAlumno={}",
                {word, word, pupil});
            break;
        case 4:
            sql(u"UPDATE Alumno_InfIndESO SET Alumno1='{}',Actitud2='{}' WHERE codAlumno={}",
                {word, word, pupil});
            break;
        case 5: // Answers that are gone, are called otherwise, or are made anew.
            sql(below(2) == 0 ? u"DELETE FROM TipoRespInfInd WHERE IDResp={}"
                              : u"DELETE FROM ConsejoOrientador_Respuesta WHERE IDCOResp={}",
                {1 + below(30)});
            break;
        case 6:
            sql(below(2) == 0 ? u"UPDATE TipoRespInfInd SET Descripcion='{}' WHERE IDResp={}"
                              : u"UPDATE ConsejoOrientador_Respuesta SET Descripcion='{}' WHERE IDCOResp={}",
                {word, 1 + below(30)});
            break;
        case 7:
            sql(u"UPDATE Alumno_InfIndPrim SET codResp={} WHERE codAlumno={} AND codTipo={}",
                {1 + below(25), pupil, 1 + below(5)});
            break;
        default:
            sql(u"UPDATE ConsejoOrientador_Nota SET codCOResp={} WHERE codAlumno={}", {1 + below(28), pupil});
            break;
        }
    }

    /// An item is typed where it belongs and then expected to be seen there, or it is not typed and is told:
    /// nowhere else, and never lost.
    void expectPlaced(const Draft& draft, const Item& item, Shown& stored, Shown& expected)
    {
        const Place& place = draft.places[item.change.place];
        const auto pupil = stored.pupils.find(place.pupil.number);
        const bool isHere = pupil != stored.pupils.end() && pupil->second == place.pupil.text;
        const std::string name =
            place.input == Input::rating
                ? ratingName(place.page, place.question)
                : toUtf8(place.index < 0 ? place.control
                                         : place.control + u"(" + decimalText(place.index) + u")");
        const Field field{place.pupil.number, name};
        EXPECT_TRUE(isHere || item.fate == Fate::noPlace) << toUtf8(place.pupil.text);
        EXPECT_TRUE(stored.fields.contains(field) || item.fate == Fate::noPlace) << name;
        told += item.fate == Fate::clash || item.fate == Fate::noPlace;
        EXPECT_NE(item.fate, Fate::refused) << name;
        const bool text = place.input == Input::text;
        const String now = stored.fields[field].value.text;
        EXPECT_TRUE(!text || item.fate != Fate::stored || now == item.change.after.value.text);
        if (item.fate != Fate::typed)
            return;
        ++typed;
        // Nobody else wrote there: what the tutor had seen is still stored.
        EXPECT_TRUE(!text || now == item.change.before.value.text) << name;
        expected.fields[field] = item.change.after;
        if (place.input == Input::rating)
            expected.fields[field] = {.value = {0, bare(item.change.after.value.text)}};
    }

    int typed = 0;
    int told = 0;
    std::optional<FreshSchool> fresh;
    std::vector<Long> present; ///< Pupils of the section at hand.
    std::mt19937 chance{seedOr(1)};
    std::vector<String> forms;
    std::vector<std::string> opening;
};

TEST_F(Section, that_others_changed_meanwhile_gets_no_text_at_a_wrong_place_and_loses_none)
{
    const int rounds = times("ZV_CAMBIOS", 30);
    for (int round = 0; round < rounds && !HasFailure(); ++round) {
        forget();
        if (round % 20 == 0) // Before nobody is left in the sections.
            fresh.emplace(u"sqlite:", true);
        const int kind = round % 3;
        inDialog(kind, [&](Form& form, Person& person) {
            work(form, person);
            present.clear();
            const ComboBox& list = *SectionControls(form).pupils;
            for (Long at = 0; at < list.ListCount(); ++at)
                present.push_back(list.ItemData(at));
        });
        for (int change = below(12); change > 0; --change)
            meddle();
        recording(false);
        Shown stored;
        inDialog(kind, [&](Form& form, Person& person) { stored = look(form, person); });
        recording(true);
        inDialog(kind, [&](Form& form, Person& person) {
            const Opening* const here = recorder().opening(form);
            for (const Found& found : draftsFor(*here, folder)) {
                const std::vector<Item> before = Recovery(form, person, found.draft).preview();
                const std::vector<Item> items = Recovery(form, person, found.draft).run();
                EXPECT_EQ(items.size(), before.size());
                Shown expected = stored;
                for (const Item& item : items)
                    expectPlaced(found.draft, item, stored, expected);
                EXPECT_EQ(look(form, person).fields, expected.fields) << "round " << round;
            }
        });
    }
    std::cout << rounds << " sections, " << typed << " values typed in, " << told << " told\n";
    EXPECT_GT(typed, 0);
}

} // namespace
} // namespace zv::journal
