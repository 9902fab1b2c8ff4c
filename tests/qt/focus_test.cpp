#include "qt/Contrast.h"
#include "qt/Window.h"

#include <QHeaderView>
#include <QLabel>
#include <QTabBar>

namespace zv::test {

using Focus = WindowTest;

TEST_F(Focus, that_comes_by_keyboard_shows_at_every_kind_of_control)
{
    ficha.msgTabla.AddItem(u"Una");
    whileOpen([&] {
        FormWindow& window = *screen.windowOf(ficha);
        underEachPalette([&] {
            for (int i = 0; i < 11; ++i) {
                QWidget& left = *window.focusWidget();
                const auto around = [&] {
                    const QRect place(left.mapTo(&window, QPoint()), left.size());
                    return window.grab(place.adjusted(-4, -4, 4, 4)).toImage();
                };
                const QImage with = around();
                QTest::keyClick(&left, Qt::Key_Tab);
                pause();
                EXPECT_GE(contrastBetween(with, around()), leastOfSigns) << left.objectName().toStdString();
            }
        });
    });
}

TEST_F(Focus, the_line_that_was_clicked_shows_until_another_is)
{
    ficha.msgTabla.Rows = 4;
    for (Long row = 1; row < 4; ++row)
        ficha.msgTabla.setRowData(row, 10 * row);
    whileOpen([&] {
        auto& table = widget<QTableView>(ficha.msgTabla);
        const auto chosen = [&] {
            const QModelIndexList rows = table.selectionModel()->selectedRows();
            return rows.isEmpty() ? 0 : rows.front().row() + 1;
        };
        EXPECT_EQ(chosen(), 0);
        const auto click = [&](int row) {
            QTest::mouseClick(table.viewport(), Qt::LeftButton, {},
                              table.visualRect(table.model()->index(row - 1, 0)).center());
        };
        click(2);
        EXPECT_EQ(chosen(), 2);
        QTest::keyClick(&table, Qt::Key_Down);
        EXPECT_EQ(chosen(), 2);
        QTest::keyClick(&table, Qt::Key_Space);
        EXPECT_EQ(chosen(), 3);
        ficha.msgTabla.RemoveItem(1);
        pause();
        EXPECT_EQ(chosen(), 2);
    });
}

TEST_F(Focus, edges_of_fields_and_marks_stand_out)
{
    whileOpen([&] {
        QWidget& window = *screen.windowOf(ficha);
        ficha.cmd(1).SetFocus();
        underEachPalette([&] {
            for (const Control* each : std::initializer_list<Control*>{
                     &ficha.txtNombre, &ficha.txtNotas, &ficha.cboLista, &ficha.chkUno, &ficha.optB}) {
                QWidget& field = widget(*each);
                // Three points outside, and three of its edge.
                const QRect left(field.mapTo(&window, QPoint(-3, field.height() / 2)), QSize(6, 1));
                EXPECT_GE(contrastIn(window.grab(left).toImage()), leastOfSigns)
                    << field.objectName().toStdString();
            }
        });
    });
}

/// Everything in which the window of a form shows a text.
struct Texts : WindowTest {
    std::vector<Drawn> all()
    {
        auto& list = widget<QComboBox>(ficha.cboLista);
        auto& table = widget<QTableView>(ficha.msgTabla);
        auto& tabs = widget<QTabBar>(ficha.mstTabs);
        auto& line = *screen.windowOf(ficha)->findChild<QLabel*>("progreso");
        line.setText(QStringLiteral("Madrid"));
        line.resize(line.sizeHint());
        const auto cell = [&](int column) { return table.visualRect(table.model()->index(1, column)); };
        QHeaderView& heading = *table.horizontalHeader();
        return {
            {"field", widget(ficha.txtNombre), inside(widget(ficha.txtNombre))},
            {"notes", widget(ficha.txtNotas), inside(widget(ficha.txtNotas))},
            {"list", list, inside(list).adjusted(0, 0, edge - list.height(), 0)},
            {"tick", widget(ficha.chkUno), behindMark(widget(ficha.chkUno))},
            {"option", widget(ficha.optA), behindMark(widget(ficha.optA))},
            {"label", widget(ficha.lblNombre), widget(ficha.lblNombre).rect()},
            {"button", widget(ficha.cmd(1)), inside(widget(ficha.cmd(1)))},
            {"default button", widget(ficha.cmd(0)), inside(widget(ficha.cmd(0)))},
            {"tab", tabs, tabs.tabRect(0).adjusted(edge, edge, -edge, -edge)},
            {"other tab", tabs, tabs.tabRect(1).adjusted(edge, edge, -edge, -edge)},
            {"title of a column", *heading.viewport(), {edge, edge, 60, heading.height() - 2 * edge}},
            {"cell", *table.viewport(), cell(1)},
            {"selected cell", *table.viewport(), cell(0)},
            {"line under the form", line, line.rect()},
        };
    }
    /// Without the edge, the mark before it or the arrow behind it.
    static constexpr int edge = 4;
    static QRect inside(const QWidget& widget) { return widget.rect().adjusted(edge, edge, -edge, -edge); }
    static QRect behindMark(const QWidget& widget)
    {
        return inside(widget).adjusted(widget.height() - edge, 0, 0, 0);
    }
    void fill()
    {
        ficha.txtNombre.Text = u"Ávila";
        ficha.txtNotas.Text = u"Madrid";
        for (const StringView town : {u"Madrid", u"Toledo"})
            ficha.cboLista.AddItem(town);
        ficha.cboLista.ListIndex = 0;
        ficha.msgTabla.Rows = 3;
        for (Long row = 0; row < 3; ++row)
            for (Long column = 0; column < 2; ++column)
                ficha.msgTabla.setTextMatrix(row, column, u"Madrid");
        ficha.msgTabla.Row = 2;
    }
};

TEST_F(Texts, can_be_read_in_light_and_in_dark)
{
    whileOpen([&] {
        fill();
        underEachPalette([&] {
            for (const bool enabled : {true, false}) {
                for (Control* each : ficha.Controls)
                    each->Enabled = enabled;
                pause();
                for (const Drawn& text : all())
                    expectLegible(text);
            }
            for (Control* each : ficha.Controls)
                each->Enabled = true;
            auto& list = widget<QComboBox>(ficha.cboLista);
            list.showPopup();
            pause();
            for (int entry = 0; entry < 2; ++entry)
                expectLegible({entry == 0 ? "chosen entry" : "entry", *list.view()->viewport(),
                               list.view()->visualRect(list.model()->index(entry, 0))});
            list.hidePopup();
            auto& field = widget<QLineEdit>(ficha.txtNombre);
            field.setFocus();
            field.selectAll();
            expectLegible({"selected text",
                           field,
                           {edge, edge, field.fontMetrics().height(), field.height() - 2 * edge}});
            QMessageBox box(QMessageBox::NoIcon, QString(), QStringLiteral("Madrid"), QMessageBox::Ok);
            box.show();
            pause();
            auto& said = *box.findChild<QLabel*>("qt_msgbox_label");
            expectLegible({"message", said, said.rect()});
            expectLegible({"button of a message", *box.buttons().front(), inside(*box.buttons().front())});
        });
    });
}

} // namespace zv::test
