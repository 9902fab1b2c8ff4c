#include "data/Statement.h"
#include "qt/QtText.h"
#include "qt/Tutor.h"
#include "qt/Walker.h"
#include "reports/frmConsejoOrientador.h"
#include "reports/frmInfIndESO.h"
#include "reports/frmInfIndPrim.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QMessageBox>
#include <QTimer>
#include <QToolTip>

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
    open(cNombreNodo::InfIndiv);
}

TEST_F(Tutor, answers_are_counted_by_pupil_but_for_those_that_have_no_note_to_be_saved_in)
{
    Long third = 0;
    const char* asks = "Cambios sin guardar de 2 alumnos";
    tutor.does[u"frmConsejoOrientador"] = [&] {
        third = guidance.cboAlumno.ItemData(2);
        EXPECT_EQ(line(), "Alumno 1 de " + std::to_string(guidance.cboAlumno.ListCount()));
        for (int pupil = 0; pupil < 3; ++pupil) {
            tabTo("cboRespuesta(2)");
            if (pupil != 1)
                press(guidance.cboRespuesta(2).ListIndex() == 0 ? Qt::Key_End : Qt::Key_Home);
            press(Qt::Key_PageDown, Qt::AltModifier);
            EXPECT_EQ(guidance.ActiveControl(), &guidance.cboRespuesta(2));
        }
        tabTo("cmdNotaManual1(1)");
        EXPECT_EQ(leaving([&] { press(Qt::Key_Return); }, leave), asks);
        EXPECT_FALSE(guidance.Visible());
    };
    open(cNombreNodo::NotaConsejoOrientador);
    // What is not saved is not lost.
    school.centro->executeNative(statement(
        u"DELETE FROM ConsejoOrientador_Nota WHERE codConsejoOrientador=3 AND codAlumno={}", {third}));
    asks = "Cambios sin guardar de 1 alumno";
    open(cNombreNodo::NotaConsejoOrientador);
}

TEST_F(Tutor, columns_fill_their_grid_and_are_dragged_and_the_list_stays_over_its_cell)
{
    tutor.does[u"frmInfIndPrim"] = [&] {
        auto& table = widget<QTableView>(primary.msgValores);
        QHeaderView& heading = *table.horizontalHeader();
        const auto drag = [&](int by) {
            QPoint at(table.columnViewportPosition(1), heading.height() / 2);
            QTest::mousePress(heading.viewport(), Qt::LeftButton, {}, at);
            at.rx() += by;
            QMouseEvent move(QEvent::MouseMove, at, heading.mapToGlobal(at), Qt::NoButton, Qt::LeftButton,
                             Qt::NoModifier);
            QApplication::sendEvent(heading.viewport(), &move);
            QTest::mouseRelease(heading.viewport(), Qt::LeftButton, {}, at);
        };
        const auto expectOverCell = [&] {
            const QRect cell = table.visualRect(table.model()->index(primary.msgValores.Row() - 1, 1));
            const QWidget& list = widget(primary.cboValor);
            EXPECT_EQ(list.x(), table.x() + cell.x());
            EXPECT_EQ(list.width(), table.columnWidth(1));
        };
        const int before = table.columnWidth(0);
        EXPECT_EQ(heading.length(), table.viewport()->width());
        tabTo("msgValores");
        press(Qt::Key_Space);
        expectOverCell();
        drag(60);
        EXPECT_EQ(table.columnWidth(0), before + 60);
        EXPECT_EQ(heading.length(), table.viewport()->width());
        expectOverCell();
        EXPECT_EQ(primary.ActiveControl(), &primary.cboValor) << "no act";
        press(Qt::Key_PageDown, Qt::AltModifier);
        press(Qt::Key_PageDown, Qt::ControlModifier);
        EXPECT_EQ(table.columnWidth(0), before + 60);
        drag(40 - table.columnWidth(0));
        for (const int column : {1, 0}) {
            const QModelIndex cell = table.model()->index(0, column);
            const QPoint at = table.visualRect(cell).center();
            QHelpEvent asks(QEvent::ToolTip, at, table.viewport()->mapToGlobal(at));
            QApplication::sendEvent(table.viewport(), &asks);
            EXPECT_EQ(QToolTip::text(), column == 0 ? cell.data().toString() : QString());
        }
    };
    open(cNombreNodo::InfIndiv);
}

/// A school whose statements take so long that a save of a section is noticed.
struct SlowConnection final : ConnectionDecorator {
    using ConnectionDecorator::ConnectionDecorator;
    RecordsetPtr Execute(StringView statement) override
    {
        statements += saving;
        if (saving)
            QTest::qSleep(3);
        return inner()->Execute(statement);
    }
    bool saving = false;
    std::size_t statements = 0;
};

/// Takes down what a line says each time that it is painted.
struct Painted final : QObject {
    explicit Painted(QLabel& line) { line.installEventFilter(this); }
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            said.push_back(dynamic_cast<QLabel&>(*watched).text().toStdString());
        return false;
    }
    std::vector<std::string> said;
};

TEST_F(Tutor, a_save_that_takes_long_tells_how_far_it_is_and_handles_no_event)
{
    const auto slow = std::make_shared<SlowConnection>(school.centro);
    school.centro = slow;
    tutor.does[u"frmConsejoOrientador"] = [&] {
        Painted painted(*tutor.front->findChild<QLabel*>("progreso"));
        bool handled = false;
        QTimer::singleShot(0, [&] { handled = true; });
        slow->saving = true;
        EXPECT_FALSE(handled);
        QTest::mouseClick(&widget(guidance.cmdNotaManual1(0)), Qt::LeftButton);
        slow->saving = false;
        EXPECT_FALSE(guidance.Visible());
        EXPECT_FALSE(handled);
        ASSERT_GT(painted.said.size(), 3U);
        EXPECT_LT(painted.said.size(), slow->statements / 2);
        EXPECT_THAT(painted.said, testing::Each(testing::HasSubstr("Guardando la sección… ")));
    };
    open(cNombreNodo::NotaConsejoOrientador);
}

} // namespace zv::test
