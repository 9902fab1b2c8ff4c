// What is told to be missing, against the dialogs: a person goes through every pupil of every section and
// counts what he sees.
#include "Times.h"
#include "data/Schools.h"
#include "data/Statement.h"
#include "data/sqlite/SqliteEngine.h"
#include "forms/Controls.h"
#include "forms/Desktop.h"
#include "module/Module.h"
#include "progress/Panel.h"
#include "reports/frmConsejoOrientador.h"
#include "reports/frmConsejoOrientador1.h"
#include "reports/frmInfIndESO.h"
#include "reports/frmInfIndPrim.h"
#include "reports/frmInformeIndividual.h"
#include "runtime/Single.h"
#include "session/HostSession.h"
#include "session/cAsignarDatos.h"
#include "suite/Sample.h"
#include "suite/sodium/EncryptoApi.h"

#include <gtest/gtest.h>

#include <random>

using namespace zv;
using progress::Kind;

namespace {

/// Of a pupil's report: how many of its obligatory parts the dialog shows filled, of how many.
using Seen = std::map<std::tuple<Kind, Long, Long>, std::pair<Long, Long>>;

bool isWritten(const String& text) { return text.find_first_not_of(u' ') != String::npos; }

/// Person who goes from pupil to pupil and counts.
struct Counting final : Desktop {
    Seen seen;
    Long section = 0;

    void opened(Form&) override {}
    void closed(Form&) override {}
    void runModal(Form& form) override
    {
        if (auto* guidance = dynamic_cast<frmConsejoOrientador*>(&form))
            each(Kind::guidance, guidance->cboAlumno, [&](auto& add) {
                for (const ComboBox& list : guidance->cboRespuesta)
                    if (list.ListCount() > 1)
                        add(list.ListIndex() > 0);
            });
        else if (auto* secondary = dynamic_cast<frmInfIndESO*>(&form))
            each(Kind::secondary, secondary->cboAlumno, [&](auto& add) {
                for (const TextBox* box :
                     {&secondary->txtCognitiva, &secondary->txtEquilibrio, &secondary->txtInsercion,
                      &secondary->txtMotrices, &secondary->txtRelacion})
                    add(isWritten(box->Text()));
                const auto anyOf = [](auto& boxes) {
                    return std::any_of(boxes.begin(), boxes.end(),
                                       [](const TextBox& box) { return isWritten(box.Text()); });
                };
                add(anyOf(secondary->txtProc1));
                add(anyOf(secondary->txtActitud));
                addCommon(secondary->otros, add);
            });
        else if (auto* primary = dynamic_cast<frmInfIndPrim*>(&form))
            each(Kind::primary, primary->cboAlumno, [&](auto& add) {
                for (int tab = 1; tab <= 5; ++tab) {
                    primary->TabInfInd.Tabs(tab).select();
                    for (Long row = 1; primary->cboValor.ListCount() > 1 && row < primary->msgValores.Rows();
                         ++row)
                        add(isWritten(primary->msgValores.TextMatrix(row, 1)));
                }
                addCommon(primary->otros, add);
            });
        form.Unload();
    }
    void messageBox(StringView prompt, Integer, StringView) override { ADD_FAILURE() << toUtf8(prompt); }
    void beep() override {}
    void doEvents() override {}
    void handlerFailed(const RuntimeError& error) override { throw error; }

private:
    template <class Count>
    void each(Kind kind, ComboBox& pupils, Count count)
    {
        for (Long place = 0; place < pupils.ListCount(); ++place) {
            pupils.ListIndex = Long{place};
            auto& counted = seen[{kind, section, pupils.ItemData(place)}];
            const auto add = [&given = counted.first, &all = counted.second](bool filled) {
                ++all;
                given += filled ? 1 : 0;
            };
            count(add);
        }
    }
    template <class Add>
    static void addCommon(const ReportDialog::CommonTexts& texts, Add& add)
    {
        add(isWritten(texts.txtValoracion.Text()));
        if (isWritten(texts.txtDificultad.Text()))
            add(isWritten(texts.txtAplicacion.Text()));
    }
};

/// Everything that the lists of a report's first dialog offer, opened one after the other.
template <class Selection, class Open>
void throughSections(Counting& person, Open open)
{
    auto& first = single<Selection>();
    first.Load();
    for (Long kind = 0; kind < first.cboTipoEnsenanza.ListCount(); ++kind) {
        first.cboTipoEnsenanza.ListIndex = Long{kind};
        for (Long course = 0; course < first.cboCursos.ListCount(); ++course) {
            first.cboCursos.ListIndex = Long{course};
            for (Long section = 0; section < first.cboSecciones.ListCount(); ++section) {
                first.cboSecciones.ListIndex = Long{section};
                person.section = first.section();
                open(first.cboTipoEnsenanza.ItemData(kind));
            }
        }
    }
}

Seen throughDialogs(const School& school)
{
    Counting person;
    useDesktop(&person);
    cAsignarDatos().ObtenerDatos(newHostSession(school));
    throughSections<frmConsejoOrientador1>(person, [](Long) { single<frmConsejoOrientador>().Show(); });
    throughSections<frmInformeIndividual>(person, [](Long kind) {
        kind == 2 ? single<frmInfIndPrim>().Show() : single<frmInfIndESO>().Show();
    });
    resetSingles();
    useDesktop(nullptr);
    return std::move(person.seen);
}

/// Fewer pupils, so that a school is soon gone through, whose reports are written in part.
void shrink(Connection& centro, std::mt19937& dice)
{
    const Long kept = 2 + static_cast<Long>(dice() % 3);
    const Long rest = static_cast<Long>(dice() % static_cast<std::size_t>(kept));
    const Long odd = 2 + static_cast<Long>(dice() % 4);
    const String pupils = statement(u"(SELECT IDAlumno FROM Alumno WHERE IDAlumno%{}={})", {kept * 8, rest});
    for (const StringView table :
         {u"Alumno_InfInd", u"Alumno_InfIndESO", u"Alumno_InfIndPrim", u"ConsejoOrientador_Nota"})
        centro.executeNative(u"DELETE FROM " + String(table));
    centro.executeNative(u"DELETE FROM Alumno WHERE IDAlumno NOT IN " + pupils);
    centro.executeNative(u"DELETE FROM Seccion_Alumno WHERE codAlumno NOT IN " + pupils);
    for (const StringView query :
         {u"INSERT INTO Alumno_InfInd SELECT IDAlumno,CASE IDAlumno%{} WHEN 0 THEN 'Lectura' ELSE ' ' "
          u"END,CASE "
          u"IDAlumno%3 WHEN 1 THEN NULL ELSE 'Promociona' END,CASE IDAlumno%{} WHEN 1 THEN 'Apoyo' END FROM "
          u"Alumno "
          u"WHERE IDAlumno%5<>0",
          u"INSERT INTO Alumno_InfIndESO SELECT IDAlumno,'a',CASE IDAlumno%{} WHEN 0 THEN '' ELSE 'b' "
          u"END,'c',NULL,"
          u"'e','',CASE IDAlumno%{} WHEN 1 THEN 'p' END,'','','','',' ' FROM Alumno WHERE IDAlumno%7<>0",
          u"INSERT INTO Alumno_InfIndPrim SELECT a.IDAlumno,m.codMateria,t.IDTipo,CASE "
          u"(a.IDAlumno+m.codMateria*t.IDTipo)%{} WHEN 0 THEN 0 ELSE 3*(t.IDTipo-1)+1 END FROM Alumno a JOIN "
          u"MateriaDetalles m ON m.CodSeccion=a.codseccion JOIN TipoInfInd t WHERE a.IDAlumno%{}>0",
          u"INSERT INTO ConsejoOrientador_Nota SELECT ROW_NUMBER() OVER (),a.IDAlumno,a.codseccion,CASE "
          u"(a.IDAlumno+q.IDConsejoOrientador)%{} WHEN 0 THEN 0 ELSE (SELECT MIN(IDCOResp) FROM "
          u"ConsejoOrientador_Respuesta WHERE CodConsejoOrientador=q.IDConsejoOrientador) END,"
          u"q.IDConsejoOrientador FROM Alumno a JOIN ConsejoOrientador q WHERE a.IDAlumno%{}<>1"})
        centro.executeNative(statement(query, {odd, odd + 1}));
}

/// What other programs and forgotten pupils do to the rows.
void disturb(Connection& centro, std::mt19937& dice)
{
    const Long number = 1 + static_cast<Long>(dice() % 14);
    const StringView all[] = {
        u"DELETE FROM TipoRespInfInd WHERE IDResp={}",
        u"UPDATE TipoRespInfInd SET CodTipo=1 WHERE IDResp={}",
        u"DELETE FROM TipoRespInfInd WHERE CodTipo={}%5+1",
        u"DELETE FROM ConsejoOrientador_Respuesta WHERE CodConsejoOrientador={}%8+1",
        u"UPDATE ConsejoOrientador_Respuesta SET CodConsejoOrientador=2 WHERE IDCOResp={}",
        u"UPDATE ConsejoOrientador_Nota SET codSeccion={}",
        u"UPDATE Alumno SET fechabaja='1/1/2025' WHERE IDAlumno%14={}",
        u"DELETE FROM Seccion_Alumno WHERE codAlumno%14={}",
        u"UPDATE Alumno SET codseccion=16 WHERE IDAlumno%14={}",
        u"DELETE FROM Alumno_MateriaDetalles WHERE codMateriaDetalles%14={}",
        u"UPDATE Materia SET codTipoMateria=1 WHERE IDMateria={}",
        u"UPDATE Curso SET finciclo=0, Orden=4 WHERE IDCurso={}",
        u"INSERT INTO ConsejoOrientador_Nota SELECT IDCORNota+(SELECT MAX(IDCORNota) FROM "
        u"ConsejoOrientador_Nota),codAlumno,codSeccion,"
        u"codCOResp*(IDCORNota%2),codConsejoOrientador FROM ConsejoOrientador_Nota WHERE codAlumno%14<{}"};
    centro.executeNative(statement(all[dice() % std::size(all)], {number}));
}

Seen told(const School& school)
{
    Seen result;
    for (const progress::Report& each : progress::panel(*school.centro).reports) {
        result[{each.kind, each.section, each.pupil}] = {each.given, each.expected};
        EXPECT_EQ(each.isWhole(), each.given == each.expected);
    }
    return result;
}

} // namespace

TEST(Progress, tells_what_a_person_sees_who_goes_through_all_dialogs)
{
    registerEngine(sqliteEngine());
    registerCipher([key = CipherKey::random()](bool) { return key; });
    installModule();
    std::size_t reports = 0;
    Long given = 0, all = 0;
    const auto schools = static_cast<std::uint32_t>(times(brief(30, 6), 1000));
    for (std::uint32_t seed = 1; seed <= schools; ++seed) {
        SCOPED_TRACE(seed);
        School school = temporarySchool();
        fillSample(school);
        std::mt19937 dice(seed);
        shrink(*school.centro, dice);
        for (std::uint32_t i = 0; i < seed % 5; ++i)
            disturb(*school.centro, dice);
        Seen seen = throughDialogs(school);
        // The dialogs of the individual reports list those who have left; nobody expects a report of them.
        std::erase_if(seen, [&](const auto& report) {
            return !school.centro
                        ->Execute(
                            statement(u"SELECT IDAlumno FROM Alumno WHERE IDAlumno={} AND fechabaja<>''",
                                      {std::get<2>(report.first)}))
                        ->Eof();
        });
        ASSERT_EQ(told(school), seen);
        reports += seen.size();
        for (const auto& [place, count] : seen) {
            given += count.first;
            all += count.second;
        }
    }
    EXPECT_GT(reports, 16 * schools);
    EXPECT_GT(given, all / 4);
    EXPECT_LT(given, all * 3 / 4);
}
