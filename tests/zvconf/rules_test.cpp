// The rules against the dialog itself: whose answers it loses when a tutor opens a section and accepts.
#include "care/rules/Rules.h"
#include "data/Schools.h"
#include "data/Statement.h"
#include "data/sqlite/SqliteEngine.h"
#include "forms/Controls.h"
#include "forms/Desktop.h"
#include "module/Module.h"
#include "reports/frmConsejoOrientador.h"
#include "reports/frmConsejoOrientador1.h"
#include "runtime/Convert.h"
#include "runtime/Single.h"
#include "session/HostSession.h"
#include "session/cAsignarDatos.h"
#include "suite/Sample.h"
#include "suite/sodium/EncryptoApi.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>

using namespace zv;

namespace {

constexpr Long section = 15;

struct Accepting final : Desktop {
    void opened(Form&) override {}
    void closed(Form&) override {}
    void runModal(Form& form) override
    {
        dynamic_cast<CommandButton&>(form.reach(u"cmdNotaManual1", 0)).Click.raise();
    }
    void messageBox(StringView prompt, Integer, StringView) override { ADD_FAILURE() << toUtf8(prompt); }
    void beep() override {}
    void doEvents() override {}
    void handlerFailed(const RuntimeError& error) override { throw error; }
};

/// Something that makes a row otherwise than the dialogs leave it, of pupils of the section or beside it.
String mischief(std::mt19937& dice)
{
    const Long pupil = 356 + static_cast<Long>(dice() % 26);
    const Long note = 1 + static_cast<Long>(dice() % 200);
    const Long answer = 1 + static_cast<Long>(dice() % 40);
    switch (dice() % 8) {
    case 0: // 12 in 112: listed before or behind.
        return statement(u"INSERT INTO Alumno (IDAlumno,Apellido_1,Apellido_2,Nombre,codseccion) VALUES "
                         u"({},'{}','','Zoe',15)",
                         {1000 * (1 + static_cast<Long>(dice() % 9)) + pupil, dice() % 2 == 0 ? u"A" : u"M"});
    case 1:
        return statement(u"UPDATE Alumno SET codseccion={} WHERE IDAlumno={}",
                         {16 + 2 * (answer % 3), pupil});
    case 2:
        return statement(u"UPDATE Alumno SET fechabaja='1/1/2025' WHERE IDAlumno={}", {pupil});
    case 3:
        return statement(u"UPDATE ConsejoOrientador_Nota SET codAlumno={} WHERE IDCORNota={}",
                         {3000 + pupil, note});
    case 4:
        return statement(u"INSERT INTO ConsejoOrientador_Nota SELECT MAX(IDCORNota)+1,{},{},{},{} FROM "
                         u"ConsejoOrientador_Nota",
                         {pupil, answer % 2 == 0 ? section : 16, answer, 1 + note % 8});
    case 5:
        return statement(u"DELETE FROM ConsejoOrientador_Respuesta WHERE IDCOResp={}", {answer});
    case 6:
        return statement(u"UPDATE ConsejoOrientador_Respuesta SET CodConsejoOrientador={} WHERE IDCOResp={}",
                         {1 + note % 8, answer});
    default:
        return statement(u"UPDATE ConsejoOrientador_Nota SET codCOResp={} WHERE IDCORNota={}",
                         {answer, note});
    }
}

/// Notes that say something: pupil and answer by key.
std::map<Long, std::pair<Long, Long>> given(const School& school)
{
    std::map<Long, std::pair<Long, Long>> result;
    const RecordsetPtr rows = school.centro->Execute(
        u"SELECT IDCORNota, codAlumno, codCOResp FROM ConsejoOrientador_Nota WHERE codCOResp>0");
    for (; !rows->Eof(); rows->MoveNext())
        result[CLng(rows->row()[0])] = {CLng(rows->row()[1]), CLng(rows->row()[2])};
    return result;
}

void acceptSection(const School& school)
{
    Accepting person;
    useDesktop(&person);
    const auto session = newHostSession(school);
    cAsignarDatos().ObtenerDatos(session);
    auto& first = single<frmConsejoOrientador1>();
    first.Load();
    const auto choose = [](ComboBox& list, Long key) { list.ListIndex = list.find(key); };
    choose(first.cboCursos, 8);
    choose(first.cboSecciones, section);
    single<frmConsejoOrientador>().Show();
    resetSingles();
    useDesktop(nullptr);
}

} // namespace

TEST(Rules, tell_whose_answers_the_dialog_loses_and_of_nobody_else)
{
    registerEngine(sqliteEngine());
    registerCipher([key = CipherKey::random()](bool) { return key; });
    installModule();
    int lost = 0;
    for (std::uint32_t seed = 1; seed <= 25; ++seed) {
        SCOPED_TRACE(seed);
        School school = temporarySchool();
        fillSample(school);
        std::mt19937 dice(seed);
        for (std::uint32_t i = 0; i < 1 + seed % 6; ++i)
            school.centro->executeNative(mischief(dice));
        const auto before = given(school);
        std::set<Long> certain, possible;
        // An orphan is told of for the school as a whole.
        for (const Long only : {section, Long{0}})
            for (const care::Finding& each :
                 care::survey(school, {.area = care::Area::guidance, .section = only}).findings) {
                const bool ofNotes = sameName(each.table, u"ConsejoOrientador_Nota");
                if ((only == 0) != (each.rule == u"consejo-huerfano") || each.rule == u"consejo-incompleto")
                    continue;
                const RecordsetPtr pupil = school.centro->Execute(
                    statement(u"SELECT codAlumno FROM ConsejoOrientador_Nota WHERE codCOResp>0 AND {}={}{}",
                              {ofNotes ? u"IDCORNota" : u"codAlumno", each.row,
                               each.rule == u"consejo-huerfano" ? u" AND codSeccion=15" : u""}));
                if (ofNotes && each.rule == u"consejo-repetido")
                    possible.insert(
                        CLng(school.centro
                                 ->Execute(statement(u"SELECT codAlumno FROM ConsejoOrientador_Nota "
                                                     u"WHERE IDCORNota={}",
                                                     {each.row}))
                                 ->row()
                                 .front()));
                else if (!pupil->Eof())
                    certain.insert(CLng(pupil->row().front()));
            }
        acceptSection(school);
        const auto after = given(school);
        std::set<Long> losers;
        for (const auto& [key, note] : before)
            if (const auto now = after.find(key); now == after.end() || now->second.second != note.second)
                losers.insert(note.first);
        lost += static_cast<int>(losers.size());
        for (const Long pupil : losers)
            EXPECT_TRUE(certain.contains(pupil) || possible.contains(pupil))
                << pupil << " lost, and nobody said so";
        for (const Long pupil : certain)
            EXPECT_TRUE(losers.contains(pupil)) << pupil << " was to lose, and did not";
    }
    EXPECT_GT(lost, 25) << "hardly anything happened";
}
