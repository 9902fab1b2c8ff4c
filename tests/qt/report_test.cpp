#include "data/Statement.h"
#include "qt/Tutor.h"
#include "reports/frmConsejoOrientador.h"
#include "reports/frmInfIndPrim.h"
#include "reports/frmInformeIndividual.h"
#include "session/cNombreNodo.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QScrollBar>
#include <QTabBar>
#include <QTableView>

#include <gmock/gmock.h>

namespace zv::test {

TEST_F(Report, a_tutor_does_a_whole_section_by_keyboard_alone)
{
    const auto unfinished = [&] {
        return row(
            u"SELECT COUNT(*), SUM(codCOResp<>(SELECT MAX(IDCOResp) FROM ConsejoOrientador_Respuesta r "
            u"WHERE r.CodConsejoOrientador=n.codConsejoOrientador)) FROM ConsejoOrientador_Nota n");
    };
    const auto pupils = CLng(school.centro
                                 ->executeNative(u"SELECT COUNT(DISTINCT codAlumno) FROM "
                                                 u"ConsejoOrientador_Nota")
                                 ->row()
                                 .front());
    ASSERT_NE(unfinished(), toUtf8(decimalText(pupils * 8)) + " 0 ");
    tutor.does[u"frmConsejoOrientador1"] = [&] { chooseSection(); };
    tutor.does[u"frmConsejoOrientador"] = [&] {
        auto& dialog = single<frmConsejoOrientador>();
        for (Long pupil = 0; pupil < pupils; ++pupil) {
            for (const Control& list : dialog.cboRespuesta) {
                tabTo(toUtf8(list.fullName()).c_str());
                press(Qt::Key_End);
            }
            press(Qt::Key_Return); // A stray key saves nothing.
            press(Qt::Key_Escape);
            ASSERT_EQ(dialog.cboAlumno.ListIndex(), pupil);
            tabTo("cmdSiguiente", Qt::Key_Backtab);
            press(Qt::Key_Space);
        }
        tabTo("cmdNotaManual1(0)");
        press(Qt::Key_Return);
        EXPECT_FALSE(dialog.Visible());
    };
    open(cNombreNodo::NotaConsejoOrientador);
    EXPECT_EQ(unfinished(), toUtf8(decimalText(pupils * 8)) + " 0 ");
}

struct Primary : Report {
    frmInfIndPrim& dialog = single<frmInfIndPrim>();

    Primary()
    {
        // More subjects than the grid shows.
        school.centro->executeNative(
            u"WITH RECURSIVE n(i) AS (SELECT 901 UNION ALL SELECT i+1 FROM n WHERE i<915) "
            u"INSERT INTO Materia (IDMateria,Nombre,codTipoMateria) SELECT i,'Más '||i,4 FROM n");
        school.centro->executeNative(u"INSERT INTO MateriaDetalles (IDMateriaDetalles,codMateria) SELECT "
                                     u"IDMateria,IDMateria FROM Materia WHERE IDMateria>900");
        school.centro->executeNative(
            u"INSERT INTO Alumno_MateriaDetalles (codAlumno,codMateriaDetalles) SELECT "
            u"IDAlumno,IDMateria FROM Alumno,Materia WHERE IDMateria>900");
        tutor.does[u"frmInformeIndividual"] = [&] { chooseSection(); };
    }
    QTableView& table() { return widget<QTableView>(dialog.msgValores); }
    QComboBox& list() { return widget<QComboBox>(dialog.cboValor); }
    void click(const Control& control) { QTest::mouseClick(&widget(control), Qt::LeftButton); }
    std::string cell(Long line) { return toUtf8(dialog.msgValores.TextMatrix(line, 1)); }
    /// Clicks the cell and picks an entry of the list that lies over it; leaves the list open.
    std::string rate(int line, Qt::Key key)
    {
        QApplication::processEvents();
        const QRect cell = table().visualRect(table().model()->index(line - 1, 1));
        QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, cell.center());
        const QRect place(list().mapTo(tutor.front, QPoint()), list().size());
        const QPoint at = table().viewport()->mapTo(tutor.front, cell.topLeft());
        EXPECT_TRUE(list().isVisible()) << line;
        EXPECT_NEAR(place.left(), at.x(), 1) << line;
        EXPECT_NEAR(place.top(), at.y(), 1) << line;
        EXPECT_NEAR(place.width(), cell.width(), 2) << line;
        EXPECT_NEAR(place.height(), cell.height(), 1) << line;
        EXPECT_EQ(tutor.front->childAt(place.center()), &list()) << line;
        QTest::keyClick(&list(), key);
        return list().currentText().toStdString();
    }
};

TEST_F(Primary, what_takes_the_list_away_commits_to_the_pupil_and_the_cell_being_left)
{
    String saved = u"SELECT COUNT(*) FROM Alumno_InfIndPrim WHERE codTipo=1 AND "
                   u"(codAlumno,codMateria,codResp) IN (VALUES ";
    const auto expect = [&](Long pupil, Long line, const std::string& text) {
        saved +=
            statement(u"({},{},{}),", {dialog.cboAlumno.ItemData(pupil),
                                       dialog.msgValores.TextMatrix(line, 2), Long{std::atoi(text.c_str())}});
    };
    tutor.does[u"frmInfIndPrim"] = [&] {
        click(dialog.cmdSiguiente);
        const std::string others = cell(1);
        click(dialog.cmdAnterior);
        const std::string first = rate(1, Qt::Key_End);
        click(dialog.cmdSiguiente);
        EXPECT_EQ(cell(1), others);
        // By the list of pupils too, picked with the mouse and the keys.
        expect(1, 1, rate(1, Qt::Key_Home));
        auto& pupils = widget<QComboBox>(dialog.cboAlumno);
        QTest::mouseClick(&pupils, Qt::LeftButton);
        QTest::keyClick(pupils.view(), Qt::Key_Home);
        QTest::keyClick(pupils.view(), Qt::Key_Return);
        EXPECT_EQ(dialog.cboAlumno.ListIndex(), 0);
        EXPECT_EQ(cell(1), first);
        EXPECT_FALSE(list().isVisible());
        expect(0, 1, first);
        // The heading, another cell, a scroll, and a cell after it.
        const std::string headed = rate(2, Qt::Key_End);
        QTest::mouseClick(table().horizontalHeader()->viewport(), Qt::LeftButton, {}, {60, 8});
        EXPECT_FALSE(list().isVisible());
        EXPECT_EQ(cell(2), headed);
        rate(3, Qt::Key_Home);
        const std::string low = rate(4, Qt::Key_End);
        EXPECT_EQ(cell(3), " ");
        table().verticalScrollBar()->setValue(3);
        EXPECT_FALSE(list().isVisible());
        EXPECT_EQ(cell(4), low);
        // Another tab, which shows other answers.
        const std::string left = rate(5, Qt::Key_End);
        auto& tabs = widget<QTabBar>(dialog.TabInfInd);
        QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(1).center());
        EXPECT_FALSE(list().isVisible());
        EXPECT_NE(cell(5), left);
        QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(0).center());
        EXPECT_EQ(cell(5), left);
        // Who writes sees how much is left.
        QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(5).center());
        TextBox& text = dialog.otros.txtDificultad;
        QTest::keyClicks(&widget(text), "uno dos");
        EXPECT_EQ(widget(text).findChild<QLabel*>()->text().toInt(),
                  200 - static_cast<int>(text.Text().size()));
        QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(0).center());
        // Saving with the list open.
        expect(0, 6, rate(6, Qt::Key_End));
        click(dialog.cmdNotaManual1(0));
        EXPECT_FALSE(dialog.Visible());
    };
    open(cNombreNodo::InfIndiv);
    saved.back() = u')';
    EXPECT_EQ(row(saved), "3 ");
}

} // namespace zv::test
