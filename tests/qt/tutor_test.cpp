#include "data/Statement.h"
#include "qt/Tutor.h"
#include "qt/Walker.h"
#include "reports/frmConsejoOrientador.h"
#include "reports/frmInfIndESO.h"
#include "reports/frmInfIndPrim.h"
#include "session/cNombreNodo.h"

#include <QAbstractButton>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QTimer>

#include <gmock/gmock.h>

namespace zv::test {

struct Tutor : Report {
    frmInfIndPrim& primary = single<frmInfIndPrim>();
    frmInfIndESO& secondary = single<frmInfIndESO>();
    frmConsejoOrientador& guidance = single<frmConsejoOrientador>();

    Tutor()
    {
        tutor.does[u"frmConsejoOrientador1"] = [&] { chooseSection(); };
        tutor.does[u"frmInformeIndividual"] = [&] { chooseSection(); };
    }
    std::string line() { return tutor.front->findChild<QLabel*>("progreso")->text().toStdString(); }
    void type(const char* letters)
    {
        for (const char* letter = letters; *letter != 0; ++letter)
            press(*letter == '\n' ? Qt::Key_Return : QTest::asciiToKey(*letter));
    }
    /// Leaves by that act, and answers what the window asks: "" if it does not.
    std::string leaving(const std::function<void()>& act, const char* button)
    {
        std::string asked;
        QTimer answer;
        answer.callOnTimeout([&] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                asked = box->text().toStdString();
                for (QAbstractButton* each : box->buttons())
                    if (each->text() == QString::fromUtf8(button))
                        each->click();
            }
        });
        answer.start(0);
        act();
        return asked;
    }
    std::string cancel(Control& button, const char* answer = stay)
    {
        return leaving([&] { QTest::mouseClick(&widget(button), Qt::LeftButton); }, answer);
    }
    static constexpr const char* leave = "Salir sin guardar";
    static constexpr const char* stay = "Seguir aquí";
};

TEST_F(Tutor, thirty_five_ratings_of_a_pupil_take_no_more_than_45_keys)
{
    std::vector<Long> pupils;
    tutor.does[u"frmInfIndPrim"] = [&] {
        press(Qt::Key_PageDown, Qt::ControlModifier);
        press(Qt::Key_PageUp, Qt::ControlModifier);
        for (int pupil = 0; pupil < 3; ++pupil) {
            pupils.push_back(primary.cboAlumno.ItemData(pupil));
            ASSERT_EQ(primary.msgValores.Rows() - 1, 7);
            keys = 0;
            type("1231231");
            EXPECT_THAT(line(), testing::HasSubstr("7 de 7 valoraciones"));
            press(Qt::Key_Tab, Qt::ControlModifier);
            type("4\n\n5");
            EXPECT_EQ(toUtf8(primary.msgValores.TextMatrix(2, 1)), "5 Los alcanza en parte");
            press(Qt::Key_Delete);
            for (int row = 4; row <= 7; ++row)
                type("n");
            press(Qt::Key_Tab, Qt::ControlModifier);
            type("7777777");
            press(Qt::Key_Tab, Qt::ControlModifier);
            type("12"); // Three numbers begin with 1.
            for (int row = 2; row <= 7; ++row)
                press(Qt::Key_D, Qt::ControlModifier);
            press(Qt::Key_Tab, Qt::ControlModifier);
            type("scmdccc");
            EXPECT_THAT(line(), testing::HasSubstr("34 de 35 valoraciones"));
            press(Qt::Key_Tab, Qt::ControlModifier);
            press(Qt::Key_Tab, Qt::ControlModifier);
            press(Qt::Key_PageDown, Qt::AltModifier);
            EXPECT_LE(keys, 45);
        }
        EXPECT_THAT(line(), testing::HasSubstr("sin guardar: 3 alumnos"));
        QTest::mouseClick(&widget(primary.cmdNotaManual1(0)), Qt::LeftButton);
        EXPECT_FALSE(primary.Visible());
    };
    open(cNombreNodo::InfIndiv);
    for (const Long pupil : pupils)
        EXPECT_EQ(
            row(statement(u"SELECT group_concat(codResp,' ') FROM (SELECT codResp FROM Alumno_InfIndPrim "
                          u"WHERE codAlumno={} ORDER BY codTipo,codMateria)",
                          {pupil})),
            "1 2 3 1 2 3 1 4 5 0 6 6 6 6 7 7 7 7 7 7 7 12 12 12 12 12 12 12 16 13 14 15 13 13 13 ");
}

TEST_F(Tutor, who_leaves_the_list_stays_in_the_grid_and_nothing_is_a_trap)
{
    tutor.does[u"frmInfIndPrim"] = [&] {
        MSFlexGrid& grid = primary.msgValores;
        tabTo("msgValores");
        for (const int key : {Qt::Key_Return, Qt::Key_Tab, Qt::Key_Backtab}) {
            const Long before = std::max<Long>(grid.Row(), 1);
            press(Qt::Key_Space);
            EXPECT_EQ(primary.ActiveControl(), &primary.cboValor);
            // What is rated, and not only the rating.
            EXPECT_EQ(hear(widget(primary.cboValor), "list")
                          .relations(QAccessible::Label)
                          .front()
                          .first->text(QAccessible::Name),
                      toQt(grid.TextMatrix(grid.Row(), 0)));
            press(key, key == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier);
            EXPECT_EQ(primary.ActiveControl(), &grid);
            EXPECT_EQ(grid.Row(), key == Qt::Key_Backtab ? before : before + 1);
            EXPECT_FALSE(primary.cboValor.Visible());
        }
        while (grid.Row() < grid.Rows() - 1)
            press(Qt::Key_Down);
        press(Qt::Key_Space);
        press(Qt::Key_Tab);
        EXPECT_EQ(primary.ActiveControl(), &grid);
        press(Qt::Key_Tab);
        EXPECT_EQ(primary.ActiveControl(), &primary.cmdNotaManual1(0));
        // The next pupil, on the same page; behind the last one, nothing.
        tabTo("msgValores");
        press(Qt::Key_PageDown, Qt::ControlModifier);
        const Long last = primary.cboAlumno.ListCount() - 1;
        for (Long pupil = 0; pupil <= last; ++pupil) {
            EXPECT_EQ(line().substr(0, line().find(" ·")),
                      "Alumno " + std::to_string(pupil + 1) + " de " + std::to_string(last + 1));
            EXPECT_EQ(primary.TabInfInd.SelectedItem().Index(), 2);
            EXPECT_EQ(primary.ActiveControl(), &grid);
            press(Qt::Key_PageDown, Qt::AltModifier);
        }
        EXPECT_EQ(primary.cboAlumno.ListIndex(), last);
        press(Qt::Key_PageUp, Qt::AltModifier);
        EXPECT_EQ(primary.cboAlumno.ListIndex(), last - 1);
        EXPECT_EQ(cancel(primary.cmdNotaManual1(1)), "");
        EXPECT_FALSE(primary.Visible());
    };
    open(cNombreNodo::InfIndiv);
}

TEST_F(Tutor, changes_are_not_thrown_away_unasked_and_are_counted_by_pupil)
{
    tutor.does[u"frmInfIndPrim"] = [&] {
        press(Qt::Key_Tab, Qt::ControlModifier);
        press(Qt::Key_PageUp, Qt::ControlModifier);
        press(Qt::Key_Space); // Opened, moved and left as it was.
        const Long was = primary.cboValor.ListIndex();
        press(was == 1 ? Qt::Key_End : Qt::Key_Home);
        for (Long step = 0; primary.cboValor.ListIndex() != was; ++step) {
            ASSERT_LT(step, 9);
            press(was == 1 ? Qt::Key_Up : Qt::Key_Down);
        }
        press(Qt::Key_Return);
        EXPECT_EQ(line().find("sin guardar"), std::string::npos) << line();
        press(Qt::Key_Space);
        press(was == 0 ? Qt::Key_End : Qt::Key_Home); // Still open.
        EXPECT_EQ(cancel(primary.cmdNotaManual1(1), stay), "Cambios sin guardar de 1 alumno");
        EXPECT_TRUE(primary.Visible());
        press(Qt::Key_PageDown, Qt::AltModifier);
        QTest::mouseClick(&widget(primary.cmdSiguiente), Qt::LeftButton);
        primary.TabInfInd.Tabs(6).select();
        QTest::keyClicks(&widget(primary.otros.txtValoracion), "ya");
        EXPECT_EQ(leaving([&] { tutor.front->close(); }, stay), "Cambios sin guardar de 2 alumnos");
        QTest::mouseClick(&widget(primary.cmdAnterior), Qt::LeftButton);
        EXPECT_THAT(line(), testing::HasSubstr("sin guardar: 2 alumnos"));
        QTest::mouseClick(&widget(primary.cmdSiguiente), Qt::LeftButton);
        primary.TabInfInd.Tabs(6).select();
        widget(primary.otros.txtValoracion).setFocus();
        QApplication::processEvents();
        QTest::keyClick(&widget(primary.otros.txtValoracion), Qt::Key_Delete);
        QTest::keyClick(&widget(primary.otros.txtValoracion), Qt::Key_Delete);
        EXPECT_EQ(leaving([&] { tutor.front->close(); }, stay), "Cambios sin guardar de 1 alumno");
        // A save that was cut has saved some, and only the dialog knows whom.
        school.centro->executeNative(u"DROP TABLE Alumno_InfIndPrim");
        const auto save = [&] { QTest::mouseClick(&widget(primary.cmdNotaManual1(0)), Qt::LeftButton); };
        EXPECT_THAT(leaving(save, "Aceptar"), testing::HasSubstr("no ha terminado"));
        EXPECT_EQ(line().find("sin guardar"), std::string::npos) << line();
        EXPECT_EQ(leaving([&] { tutor.front->close(); }, leave), "Puede haber cambios sin guardar");
        EXPECT_FALSE(primary.Visible());
    };
    tutor.does[u"frmConsejoOrientador"] = [&] {
        EXPECT_EQ(line(), "Alumno 1 de " + std::to_string(guidance.cboAlumno.ListCount()));
        for (int pupil = 0; pupil < 3; ++pupil) {
            tabTo("cboRespuesta(2)");
            if (pupil != 1)
                press(guidance.cboRespuesta(2).ListIndex() == 0 ? Qt::Key_End : Qt::Key_Home);
            press(Qt::Key_PageDown, Qt::AltModifier);
            EXPECT_EQ(guidance.ActiveControl(), &guidance.cboRespuesta(2));
        }
        tabTo("cmdNotaManual1(1)");
        EXPECT_EQ(leaving([&] { press(Qt::Key_Return); }, leave), "Cambios sin guardar de 2 alumnos");
        EXPECT_FALSE(guidance.Visible());
    };
    open(cNombreNodo::InfIndiv);
    open(cNombreNodo::NotaConsejoOrientador);
}

} // namespace zv::test
