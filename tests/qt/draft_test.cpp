#include "journal/Journals.h"
#include "qt/Hand.h"
#include "qt/Walker.h"
#include "reports/frmInfIndESO.h"

#include <QClipboard>
#include <QTimer>

#include <fstream>

namespace zv::test {

using testing::ContainsRegex;
using testing::HasSubstr;

/// A tutor's section after his program died, and what the bar over it offers.
struct Drafts : Hands {
    Drafts() { hand.keepDrafts(); }
    void open(const std::function<void(FormWindow&)>& does)
    {
        hand.does = [&](FormWindow& window) {
            if (window.form().Name() == u"frmInfIndESO")
                does(window);
            else
                chooseSection(window, 3);
        };
        openNode(school, cNombreNodo::InfIndiv);
    }
    /// What the journal of that dialog was when its program died is there again when the dialog has closed.
    void dies(FormWindow& window)
    {
        EXPECT_TRUE(hand.keptDrafts());
        const std::filesystem::path file = journal::recorder().file(window.form());
        std::filesystem::copy(file, created / "muerto");
        window.form().Unload();
        EXPECT_THAT(journal::journalFiles(journal::recordedFolder()), testing::IsEmpty());
        std::filesystem::rename(created / "muerto", file);
    }
    /// As a window manager would, once the window in front has closed.
    static void activate(FormWindow& window)
    {
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    static void press(FormWindow& window, Qt::Key key)
    {
        activate(window);
        QTest::keyClick(window.focusWidget(), key, Qt::AltModifier);
    }
    static std::string told(FormWindow& window)
    {
        const auto& bar = *window.findChild<QWidget*>(QStringLiteral("avisoVentana"));
        return bar.isHidden() ? "" : bar.findChild<QLabel*>()->text().toStdString();
    }
    /// Does that in the window that the key opens.
    static void in(FormWindow& window, Qt::Key key, const std::function<void(QWidget&)>& does)
    {
        bool done = false;
        activate(window);
        QTimer::singleShot(0, [&] {
            done = true;
            QWidget* opened = QApplication::activeModalWidget();
            ASSERT_NE(opened, nullptr);
            ASSERT_NE(opened, &window);
            does(*opened);
            opened->close();
        });
        QTest::keyClick(window.focusWidget(), key, Qt::AltModifier);
        EXPECT_TRUE(done);
    }
    static std::string seen(const QWidget& view)
    {
        const auto& table = *view.findChild<QTableView*>();
        std::string text;
        for (int line = 0; line < table.model()->rowCount(); ++line)
            for (int column = 0; column < table.model()->columnCount(); ++column)
                text += table.model()->index(line, column).data().toString().toStdString() +
                        (column + 1 < table.model()->columnCount() ? "|" : "\n");
        return text;
    }
    void write(FormWindow& window, Long pupil, const char* text)
    {
        window.act([&](Acts& acts) {
            auto& list = dynamic_cast<ComboBox&>(*window.form().find(u"cboAlumno"));
            return acts.choose(list, pupil) &&
                   acts.type(*window.form().find(u"txtCognitiva"), fromUtf8(text));
        });
    }
    static void accept(FormWindow& window)
    {
        window.act([&](Acts& acts) { return acts.click(*window.form().find(u"cmdNotaManual1", 0)); });
    }
    /// Texts of three pupils when the program died. Since then the second has left the section, and somebody
    /// else has written where the third's was.
    void leaveThree()
    {
        Long numbers[3] = {};
        open([&](FormWindow& window) {
            EXPECT_EQ(told(window), "");
            const auto& list = dynamic_cast<ComboBox&>(*window.form().find(u"cboAlumno"));
            constexpr const char* texts[] = {"Lee bien. ", "Suma. ", "Resta. "};
            for (const Long pupil : {0, 1, 2}) {
                names[pupil] = toUtf8(list.List(pupil));
                numbers[pupil] = list.ItemData(pupil);
                write(window, pupil, texts[pupil]);
            }
            dies(window);
        });
        school.centro->Execute(u"UPDATE Alumno SET codseccion=1 WHERE IDAlumno=" + decimalText(numbers[1]));
        school.centro->Execute(u"UPDATE Alumno_InfIndESO SET Alumno1='De otra persona' WHERE CodAlumno=" +
                               decimalText(numbers[2]));
    }
    std::string names[3]; ///< Of those pupils.
};

TEST_F(Drafts, are_offered_seen_and_typed_in_where_they_still_fit)
{
    leaveThree();
    open([&](FormWindow& window) {
        picture(window, "barra");
        EXPECT_THAT(told(window), ContainsRegex("^Hay textos sin guardar de (hoy|ayer) a las? [0-9]+:[0-9]+: "
                                                "3 alumnos, 3 textos$"));
        const std::string before = heldBy(window.form());
        in(window, Qt::Key_V, [&](QWidget& view) {
            picture(view, "ver");
            EXPECT_THAT(seen(view),
                        ContainsRegex(names[0] + "[|].*[|].*[|]Lee bien. .*[|]\n" + names[1] +
                                      "[|].*[|]—[|]Suma. .*[|]Ya no tiene sitio.\n" + names[2] +
                                      "[|].*[|]De otra persona[|]Resta. .*[|]Alguien ha puesto otra cosa"));
            for (QWidget* each : view.findChildren<QWidget*>())
                if (each->focusPolicy() & Qt::TabFocus && each->isVisible())
                    hear(*each, "ver");
            auto& table = *view.findChild<QTableView*>();
            table.setCurrentIndex(table.model()->index(1, 3));
            QTest::keyClick(&table, Qt::Key_C, Qt::ControlModifier);
            EXPECT_THAT(QApplication::clipboard()->text().toStdString(), HasSubstr("Suma. "));
        });
        EXPECT_EQ(heldBy(window.form()), before) << "who looks changes nothing";
        press(window, Qt::Key_R);
        picture(window, "escrito");
        EXPECT_THAT(told(window),
                    HasSubstr("Escrito de nuevo: 1 dato; se guarda con «Aceptar». Sin escribir: 2"));
        EXPECT_TRUE(window.form().Visible());
        in(window, Qt::Key_V, [&](QWidget& view) {
            EXPECT_THAT(seen(view), HasSubstr("Suma. "));
            EXPECT_THAT(seen(view), testing::Not(HasSubstr("Lee bien. ")));
        });
        accept(window);
    });
    const std::vector<Value> kept =
        school.centro
            ->executeNative(u"SELECT SUM(Alumno1 LIKE 'Lee bien. %'), SUM(Alumno1='De otra persona') FROM "
                            u"Alumno_InfIndESO")
            ->row();
    EXPECT_EQ(CLng(kept.at(0)), 1);
    EXPECT_EQ(CLng(kept.at(1)), 1);
}

TEST_F(Drafts, are_kept_until_they_are_thrown_away)
{
    leaveThree();
    open([&](FormWindow& window) {
        press(window, Qt::Key_R);
        in(window, Qt::Key_D, [&](QWidget& box) { QTest::keyClick(&box, Qt::Key_Return); });
        EXPECT_THAT(told(window), HasSubstr("Sin escribir: 2"));
        accept(window);
    });
    open([&](FormWindow& window) {
        EXPECT_THAT(told(window), HasSubstr("2 alumnos, 2 textos"));
        press(window, Qt::Key_R);
        EXPECT_THAT(told(window), HasSubstr("No se ha escrito nada. Sin escribir: 2"));
        in(window, Qt::Key_D, [&](QWidget& box) {
            QTest::keyClick(box.focusWidget(), Qt::Key_Backtab);
            QTest::keyClick(box.focusWidget(), Qt::Key_Space);
        });
        EXPECT_EQ(told(window), "");
    });
    open([&](FormWindow& window) { EXPECT_EQ(told(window), ""); });
    EXPECT_THAT(journal::journalFiles(journal::recordedFolder()), testing::IsEmpty());
}

TEST_F(Drafts, that_cannot_be_kept_are_told_once_and_work_goes_on)
{
    std::filesystem::remove_all(created / "estado");
    std::ofstream(created / "estado") << "no folder";
    open([&](FormWindow& window) {
        EXPECT_EQ(told(window), "") << "nothing can be lost yet";
        write(window, 0, "Lee");
        picture(window, "lleno");
        EXPECT_THAT(told(window), HasSubstr("no se puede ir apuntando"));
        EXPECT_FALSE(hand.keptDrafts());
        press(window, Qt::Key_E);
        write(window, 1, "Suma");
        EXPECT_EQ(told(window), "");
        EXPECT_THAT(heldBy(window.form()), HasSubstr("txtCognitiva=Suma"));
    });
}

} // namespace zv::test
